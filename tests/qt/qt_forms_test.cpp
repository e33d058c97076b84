// Windows as forms: each member that `Forms` asks for on live windows, whatever the size and scale
// of the screens and whether the window system puts frames around them.
#include <QApplication>
#include <QDialog>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScreen>
#include <QTest>
#include <array>

#include "quorl/forms/forms.hpp"
#include "quorl/qt/form.hpp"
#include "quorl/qt/values.hpp"
#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/screen.hpp"
#include "quorl/store/memory_store.hpp"
#include "quorl/store/operations.hpp"
#include "support/raises.hpp"

namespace quorl::qt {
namespace {

using namespace Qt::StringLiterals;

using Place = std::array<Double, 4>;

Place PlaceOf(const Object& form) {
  const auto length = [&](StringView name) { return ToDouble(form.Get(name)); };
  return {length(u"Left"), length(u"Top"), length(u"Width"), length(u"Height")};
}

void Move(const Object& form, const Place& place) {
  std::array<Variant, 4> lengths{place[0], place[1], place[2], place[3]};
  form.Call(u"Move", lengths);
}

// Shown, with its frame around it, and at rest.
void Show(QWidget& window) {
  window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
  QTest::qWait(50);
}

TEST(QtForm, GivesEveryMemberThatFormsAsksFor) {
  QWidget window;
  window.setObjectName(u"FrmOrder"_s);
  const Object form = FormOf(&window);
  Show(window);
  Move(form, {1500, 900, 6000, 4500});
  QTest::qWait(50);
  EXPECT_EQ(PlaceOf(form), (Place{1500, 900, 6000, 4500}));
  EXPECT_EQ(window.frameGeometry().size(), QSize(400, 300));
  const QPoint corner = window.frameGeometry().topLeft() - window.screen()->geometry().topLeft();
  EXPECT_EQ(corner, QPoint(100, 60));
  EXPECT_EQ(form.Get(u"Name"), Variant(u"FrmOrder"));
  EXPECT_EQ(form.Get(u"ScaleWidth"), Variant(window.width() * 15.0));
  EXPECT_EQ(form.Get(u"ScaleHeight"), Variant(window.height() * 15.0));
  EXPECT_EQ(form.Get(u"MDIChild"), Variant(false));
  EXPECT_EQ(form.Get(u"WindowState"), Variant(Int16{0}));
  EXPECT_EQ(form.Get(u"BorderStyle"), Variant(Int16{2}));
  form.Put(u"Left", {}, u"1515");
  form.Put(u"Width", {}, 4990);
  QTest::qWait(50);
  EXPECT_EQ(PlaceOf(form), (Place{1515, 900, 4995, 4500}));
  form.Put(u"WindowTitle", {}, u"Order");
  EXPECT_EQ(window.windowTitle(), u"Order"_s);
}

TEST(QtForm, KnowsItsStates) {
  QWidget window;
  const Object form = FormOf(&window);
  Show(window);
  for (const Int16 state : {Int16{2}, Int16{0}, Int16{1}, Int16{0}}) {
    form.Put(u"WindowState", {}, state);
    QTest::qWait(50);
    EXPECT_EQ(form.Get(u"WindowState"), Variant(state));
  }
  const Place place = PlaceOf(form);
  std::array<Variant, 5> five{1, 1, 1, 1, 1};
  EXPECT_RAISES(form.Put(u"WindowState", {}, Int16{3}), RuntimeFailure(5));
  EXPECT_RAISES(form.Call(u"Move"), RuntimeFailure(5));
  EXPECT_RAISES(form.Call(u"Move", five), RuntimeFailure(5));
  EXPECT_RAISES(form.Put(u"Left", {}, 1e12), RuntimeFailure(6));
  EXPECT_RAISES(form.Put(u"Left", {}, u"x"), RuntimeFailure(13));
  EXPECT_RAISES(form.Put(u"BorderStyle", {}, 1), RuntimeFailure(438));
  EXPECT_RAISES(form.Get(u"Caption"), RuntimeFailure(438));
  EXPECT_EQ(PlaceOf(form), place);
  form.Put(u"WindowState", {}, Int16{2});
  EXPECT_RAISES(form.Put(u"Top", {}, 1), RuntimeFailure(5));
}

TEST(QtForm, KnowsItsBorder) {
  struct Case {
    Qt::WindowFlags flags;
    bool is_fixed;
    Int16 style;
  };
  for (const Case& border :
       {Case{Qt::Window, false, 2}, Case{Qt::Window, true, 1}, Case{Qt::Dialog, false, 2},
        Case{Qt::Dialog, true, 3}, Case{Qt::Tool, true, 4}, Case{Qt::Tool, false, 5},
        Case{Qt::Window | Qt::FramelessWindowHint, false, 0}}) {
    QWidget window(nullptr, border.flags);
    if (border.is_fixed) window.setFixedSize(100, 100);
    EXPECT_EQ(FormOf(&window).Get(u"BorderStyle"), Variant(border.style));
  }
}

// A window that is moved before it was ever shown has no frame yet.
TEST(QtForm, TakesASizeWithFrameBeforeItHasOne) {
  for (const bool is_sized_meanwhile : {false, true}) {
    QWidget window;
    const Object form = FormOf(&window);
    Move(form, {3000, 1500, 7500, 6000});
    EXPECT_EQ(PlaceOf(form), (Place{3000, 1500, 7500, 6000}));
    if (is_sized_meanwhile) window.resize(333, 222);
    Show(window);
    const QSize inner = window.size();
    const QSize outer = window.frameGeometry().size();
    EXPECT_EQ(is_sized_meanwhile ? inner : outer,
              is_sized_meanwhile ? QSize(333, 222) : QSize(500, 400));
    EXPECT_EQ(PlaceOf(form)[0], 3000);
    EXPECT_EQ(PlaceOf(form)[1], 1500);
    QTest::qWait(100);
    EXPECT_EQ(window.size(), inner) << "it is corrected once";
  }
}

class Placed : public testing::Test {
 protected:
  Placed() { settings.InitApp(u"Maison", u"Caisse"); }

  MemoryStore store;
  ScopedStore in_memory{store};
  Registry settings;
};

TEST_F(Placed, ComesBackWhereItWasOverManyRuns) {
  const Place place{1800, 1200, 6000, 4500};
  for (int run = 0; run < 4; ++run) {
    QWidget window;
    window.setObjectName(u"Frm"_s);
    UseScreenOf(&window);
    if (run == 0) Move(FormOf(&window), place);
    Forms::GetFormSettings(settings, FormOf(&window));
    Show(window);
    EXPECT_EQ(PlaceOf(FormOf(&window)), place) << "run " << run;
    Forms::SaveFormSettings(settings, FormOf(&window));
  }
}

TEST_F(Placed, ComesBackMaximised) {
  {
    QWidget window;
    Show(window);
    FormOf(&window).Put(u"WindowState", {}, Int16{2});
    Forms::SaveFormSettings(settings, FormOf(&window), u"Frm");
  }
  QWidget window;
  Forms::GetFormSettings(settings, FormOf(&window), u"Frm");
  Show(window);
  EXPECT_TRUE(window.isMaximized());
}

TEST_F(Placed, IsCentredOnEachScreen) {
  for (const QScreen* screen : QApplication::screens()) {
    QWidget window;
    window.setGeometry(QRect(screen->geometry().topLeft() + QPoint(20, 20), QSize(120, 90)));
    Show(window);
    UseScreenOf(&window);
    const QSize size = screen->geometry().size();
    EXPECT_EQ(Screen::Width(), static_cast<Single>(size.width() * 15));
    EXPECT_EQ(Screen::Height(), static_cast<Single>(size.height() * 15));
    Forms::InitFormSettings(FormOf(&window), {}, 3000, 2400);
    QTest::qWait(50);
    const QPoint off = window.frameGeometry().center() - screen->geometry().center();
    EXPECT_LE(off.manhattanLength(), 2) << screen->name().toStdString();
    EXPECT_EQ(window.frameGeometry().size(), QSize(200, 160));
  }
}

TEST_F(Placed, SubwindowsLiveInTheirArea) {
  QMainWindow main;
  auto* area = new QMdiArea;
  main.setCentralWidget(area);
  main.resize(600, 480);
  QMdiSubWindow* sub = area->addSubWindow(new QWidget);
  sub->setObjectName(u"FrmChild"_s);
  Show(main);
  const Object form = FormOf(sub->widget());
  const Object container = FormOf(&main);
  EXPECT_EQ(form.Get(u"MDIChild"), Variant(true));
  EXPECT_EQ(container.Get(u"ScaleWidth"), Variant(area->viewport()->width() * 15.0));
  EXPECT_EQ(container.Get(u"ScaleHeight"), Variant(area->viewport()->height() * 15.0));
  Forms::InitFormSettings(form, container, 4500, 3000);
  EXPECT_EQ(sub->size(), QSize(300, 200));
  EXPECT_EQ(sub->pos().x(), (area->viewport()->width() - 300) / 2);
  Move(form, {150, 225, 4500, 3000});
  UseScreenOf(&main);
  Forms::SaveFormSettings(settings, form);
  Move(form, {0, 0, 3000, 3000});
  Forms::GetFormSettings(settings, form);
  EXPECT_EQ(PlaceOf(form), (Place{150, 225, 4500, 3000}));
  for (const Int16 state : {Int16{2}, Int16{0}, Int16{1}, Int16{0}}) {
    form.Put(u"WindowState", {}, state);
    EXPECT_EQ(form.Get(u"WindowState"), Variant(state));
  }
  EXPECT_EQ(PlaceOf(form), (Place{150, 225, 4500, 3000}));
}

TEST_F(Placed, IsFailure91OnceDeleted) {
  auto window = std::make_unique<QDialog>();
  const Object form = FormOf(window.get());
  EXPECT_EQ(form.Get(u"Name"), Variant(u"QDialog"));
  window.reset();
  EXPECT_RAISES(Forms::GetFormSettings(settings, form), RuntimeFailure(91));
  EXPECT_RAISES(Move(form, {}), RuntimeFailure(91));
  EXPECT_TRUE(FormOf(nullptr).IsEmpty());
  UseScreenOf(nullptr);
}

}  // namespace
}  // namespace quorl::qt
