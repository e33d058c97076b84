// Values and any object of the toolkit: every row of the table both ways, and objects by name.
#include <QDateTime>
#include <QLabel>
#include <QSpinBox>
#include <QUuid>
#include <array>
#include <limits>

#include "quorl/qt/object.hpp"
#include "quorl/qt/values.hpp"
#include "quorl/runtime/convert.hpp"
#include "support/raises.hpp"
#include "support/random.hpp"

namespace quorl::qt {
namespace {

using namespace literals;
using namespace Qt::StringLiterals;

// What `value` becomes, and what that becomes again where it differs from `value`.
struct Row {
  QVariant value;
  Variant expected;
  QVariant back;
};

TEST(QtValues, PassBothWays) {
  const auto bytes = [](std::vector<Byte> content) { return Array::OfBytes(std::move(content)); };
  Array mixed(VariantType::kVariant, {{0, 2}});
  mixed.Set({0}, Int32{5});
  mixed.Set({1}, Null);
  const std::array<String, 2> texts{u"a", u""};
  const QVariant null = QVariant::fromValue(nullptr);
  const QDate day(2026, 12, 24);
  const QString odd = QString(QChar(0xD800)) + QChar(0) + u"x"_s;
  const std::vector<Row> rows{
      {QVariant(), Empty, {}},
      {null, Null, null},
      {QVariant(QMetaType::fromType<int>()), Null, null},
      {QDate(), Null, null},
      {true, true, true},
      {QVariant::fromValue<uchar>(255), Byte{255}, QVariant::fromValue<uchar>(255)},
      {QVariant::fromValue<short>(-5), Int16{-5}, QVariant::fromValue<short>(-5)},
      {QVariant::fromValue<ushort>(65535), 65535, 65535},
      {-7, -7, -7},
      {4294967295U, 4294967295.0, 4294967295.0},
      {Q_INT64_C(-2147483648), std::numeric_limits<Int32>::min(), -2147483647 - 1},
      {Q_INT64_C(1) << 62, 4611686018427387904.0, 4611686018427387904.0},
      {1.5F, 1.5F, 1.5F},
      {0.1, 0.1, 0.1},
      {QVariant::fromValue(12.5_cy), 12.5_cy, QVariant::fromValue(12.5_cy)},
      {day, DateOf({2026, 12, 24}), day},
      {QDate(1899, 12, 29), Date(-1), QDate(1899, 12, 29)},
      {QTime(6, 0), Date(0.25), QTime(6, 0)},
      {QDateTime(QDate(1899, 12, 29), QTime(6, 0)), Date(-1.25),
       QDateTime(QDate(1899, 12, 29), QTime(6, 0))},
      // An hour that the clocks of the tests' time zone leave out.
      {QDateTime(QDate(2026, 3, 29), QTime(2, 30), Qt::UTC), DateOf({2026, 3, 29, 2, 30}),
       QDateTime(QDate(2026, 3, 29), QTime(2, 30), Qt::UTC)},
      {odd, FromQString(odd), odd},
      {QChar(u'é'), u"é", u"é"_s},
      {QUuid(u"{0a000000-0000-0000-0000-00000000000b}"_s),
       u"{0A000000-0000-0000-0000-00000000000B}", u"{0A000000-0000-0000-0000-00000000000B}"_s},
      {QByteArray("\xFF\0", 2), bytes({255, 0}), QByteArray("\xFF\0", 2)},
      {QByteArray(""), bytes({}), QByteArray("")},
      {QStringList{u"a"_s, u""_s}, Array::OfStrings(texts), QStringList{u"a"_s, u""_s}},
      {QVariantList{5, null}, mixed, QVariantList{5, null}},
      {QVariant::fromValue<QObject*>(nullptr), Object(), QVariant::fromValue<QObject*>(nullptr)},
  };
  for (const Row& row : rows) {
    const Variant given = FromQt(row.value);
    EXPECT_EQ(given, row.expected) << row.value.typeName() << ", row " << (&row - rows.data());
    EXPECT_EQ(ToQt(given), row.back) << row.value.typeName() << ", row " << (&row - rows.data());
  }
}

TEST(QtValues, EveryMillisecondOfADateComesBack) {
  Random random(1);
  for (int i = 0; i < 20000; ++i) {
    const QDate day = QDate(100, 1, 1).addDays(random.Whole(0, 3615899));
    const QTime time = QTime::fromMSecsSinceStartOfDay(static_cast<int>(random.Whole(1, 86399999)));
    const QVariant back = ToQt(FromQt(QDateTime(day, time, Qt::UTC)));
    ASSERT_TRUE(back.toDateTime().date() == day || day == QDate(1899, 12, 30)) << i;
    ASSERT_EQ(back.toDateTime().time(), time) << day.toString(Qt::ISODate).toStdString();
  }
  EXPECT_EQ(ToQt(Date(1.9999999999)), QVariant(QDate(1900, 1, 1)))
      << "less than a millisecond before";
}

TEST(QtValues, WhatHasNoExactCounterpartFails) {
  const Array table(VariantType::kInt32, {{0, 1}, {0, 1}});
  EXPECT_RAISES(FromQt((Q_INT64_C(1) << 53) + 1), RuntimeFailure(6));
  EXPECT_RAISES(FromQt(std::numeric_limits<quint64>::max()), RuntimeFailure(6));
  EXPECT_RAISES(FromQt(std::numeric_limits<qint64>::max()), RuntimeFailure(6));
  EXPECT_RAISES(FromQt(QDate(99, 12, 31)), RuntimeFailure(6));
  EXPECT_RAISES(FromQt(QVariantMap{{u"a"_s, 1}}), RuntimeFailure(13));
  EXPECT_RAISES(ToQt(Missing), RuntimeFailure(13));
  EXPECT_RAISES(ToQt(table), RuntimeFailure(13));
  EXPECT_RAISES(ToQt(Date(3000000)), RuntimeFailure(6));
  EXPECT_RAISES(ToQt(MakeObject<LateBound>()), RuntimeFailure(13));
}

TEST(QtValues, AnAmountIsBoundDigitByDigit) {
  EXPECT_EQ(ToQt(Currency::Lowest()).toString(), u"-922337203685477.5808"_s);
  EXPECT_EQ(ToQt(0.05_cy).toDouble(), 0.05);
}

TEST(QtValues, TextsAreLent) {
  const QString text = u"élan"_s;
  EXPECT_EQ(static_cast<const void*>(Lend(text).data()), text.utf16());
  EXPECT_EQ(Lend(StringView(u"ab")), u"ab");
}

// An object of a host with everything that can be called.
class Till : public QObject {
  Q_OBJECT
  Q_PROPERTY(int drawer MEMBER drawer)
  Q_PROPERTY(QString label READ objectName)
 public:
  int drawer = 0;
  Q_INVOKABLE int Add(int a, int b) const { return a + b; }
  Q_INVOKABLE QVariant Echo(const QVariant& value) const { return value; }
  Q_INVOKABLE QObject* Self() { return this; }
  Q_INVOKABLE QString Twice(const QString& text) const { return text + text; }
  Q_INVOKABLE void Refuse() const { throw RaisedError(1234, u"Till", u"closed"); }
 signals:
  void opened();
 public slots:
  void open() { drawer = 1; }
};

TEST(QtObject, AnswersToPropertiesAndMethods) {
  Till till;
  till.setProperty("Counter", 4);
  const Object object = ObjectOf(&till);
  std::array<Variant, 2> two{Int16{2}, u"3"};
  std::array<Variant, 1> one{12.5_cy};
  object.Put(u"DRAWER", {}, Int16{7});
  EXPECT_EQ(object.Get(u"Drawer"), Variant(7));
  EXPECT_EQ(object.Get(u"counter"), Variant(4));
  object.Put(u"counter", {}, u"five");
  EXPECT_EQ(object.Get(u"Counter"), Variant(u"five"));
  EXPECT_EQ(object.Call(u"Add", two), Variant(5));
  EXPECT_EQ(object.Get(u"add", two), Variant(5));
  EXPECT_EQ(object.Call(u"Echo", one), Variant(12.5_cy));
  EXPECT_EQ(object.Call(u"Twice", one), Variant(u"12.500012.5000"));
  EXPECT_TRUE(object.Call(u"open").IsEmpty());
  EXPECT_EQ(till.drawer, 1);
  EXPECT_EQ(QObjectOf(ToObject(object.Get(u"Self"))), &till);
  QLabel label;
  EXPECT_EQ(ObjectOf(&label).Get(u"alignment"), Variant(int(Qt::AlignLeft | Qt::AlignVCenter)));
  EXPECT_EQ(ObjectOf(&label).Get(u"TextFormat"), Variant(int(Qt::AutoText)));
}

TEST(QtObject, SaysWhatItCannotDo) {
  Till till;
  QSpinBox spin;
  const Object object = ObjectOf(&till);
  std::array<Variant, 1> one{1};
  std::array<Variant, 2> bad{1, u"x"};
  const Array list = Array::OfBytes({1});
  EXPECT_RAISES(object.Get(u"Width"), RuntimeFailure(438));
  EXPECT_RAISES(object.Put(u"Width", {}, 1), RuntimeFailure(438));
  EXPECT_RAISES(object.Put(u"label", {}, u"x"), RuntimeFailure(438));
  EXPECT_RAISES(object.Put(u"drawer", one, 1), RuntimeFailure(438));
  EXPECT_RAISES(object.Call(u"opened"), RuntimeFailure(438));
  EXPECT_RAISES(object.Get({}), RuntimeFailure(438));
  EXPECT_RAISES(object.Call(u"Add", one), RuntimeFailure(5));
  EXPECT_RAISES(object.Call(u"Add", bad), RuntimeFailure(13));
  EXPECT_RAISES(ObjectOf(&spin).Put(u"value", {}, list), RuntimeFailure(13));
  EXPECT_RAISES(ObjectOf(&spin).Get(u"font"), RuntimeFailure(13));
  EXPECT_RAISES(object.Call(u"Refuse"), (Failure{1234, u"Till", u"closed"}));
  EXPECT_RAISES(QObjectOf(MakeObject<LateBound>()), RuntimeFailure(13));
  EXPECT_TRUE(ObjectOf(nullptr).IsEmpty());
}

TEST(QtObject, IsFailure91OnceDeleted) {
  auto* till = new Till;
  const Object object = ObjectOf(till);
  delete till;
  EXPECT_RAISES(object.Get(u"drawer"), RuntimeFailure(91));
  EXPECT_RAISES(object.Put(u"drawer", {}, 1), RuntimeFailure(91));
  EXPECT_RAISES(object.Call(u"open"), RuntimeFailure(91));
  EXPECT_RAISES(ToQt(object), RuntimeFailure(91));
  EXPECT_TRUE(IsOfQt(object));
}

}  // namespace
}  // namespace quorl::qt

#include "qt_values_test.moc"
