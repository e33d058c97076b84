// Combo boxes, records and keys: each member that the library asks for, on live widgets and in a
// live database.
#include <QComboBox>
#include <QLineEdit>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlField>
#include <QStandardItemModel>
#include <QStringListModel>
#include <QTest>
#include <array>

#include "quorl/fields/db_lib.hpp"
#include "quorl/forms/combo_box_ex.hpp"
#include "quorl/qt/combo.hpp"
#include "quorl/qt/decimal_keys.hpp"
#include "quorl/qt/fields.hpp"
#include "quorl/qt/values.hpp"
#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/locale.hpp"
#include "quorl/store/memory_store.hpp"
#include "quorl/store/operations.hpp"
#include "support/raises.hpp"

namespace quorl::qt {
namespace {

using namespace literals;
using namespace Qt::StringLiterals;

class Combo : public testing::Test {
 protected:
  Combo() {
    box.addItem(u"Paris"_s, 75);
    box.addItem(u"Bruxelles 1000"_s);
    box.addItem(u"Rome"_s, QVariant::fromValue(nullptr));
  }
  QComboBox box;
  Object object = ComboOf(&box);
};

TEST_F(Combo, GivesEveryMemberThatComboBoxExAsksFor) {
  std::array<Variant, 1> first{Int16{0}}, second{Int16{1}}, third{Int16{2}};
  EXPECT_EQ(object.Get(u"ListCount"), Variant(3));
  EXPECT_EQ(object.GetByReference(u"List", second), Variant(u"Bruxelles 1000"));
  EXPECT_EQ(object.Get(u"ItemData", first), Variant(75));
  EXPECT_EQ(object.Get(u"ItemData", second), Variant(0));
  EXPECT_EQ(object.Get(u"ItemData", third), Variant(Null));
  object.Put(u"ListIndex", {}, Int16{2});
  EXPECT_EQ(object.Get(u"ListIndex"), Variant(2));
  EXPECT_EQ(box.currentText(), u"Rome"_s);
  ComboBoxEx::CmbSelectMatchToken(object, u"1000", 2);
  EXPECT_EQ(box.currentIndex(), 1);
  ComboBoxEx::CmbSelectItemData(object, 75);
  EXPECT_EQ(ComboBoxEx::CmbCurrentItemData(object, -1), 75);
  ComboBoxEx::CmbSelectMatchString(object, u"Rom");
  EXPECT_EQ(box.currentIndex(), -1);
  EXPECT_EQ(object.Get(u"MaxVisibleItems"), Variant(10));
}

TEST_F(Combo, KeepsItsSelectionWhenAnIndexIsRefused) {
  box.setCurrentIndex(1);
  std::array<Variant, 1> beyond{Int16{3}};
  std::array<Variant, 2> two{1, 1};
  for (const Int32 index : {-2, 3}) {
    EXPECT_RAISES(object.Put(u"ListIndex", {}, index), RuntimeFailure(9));
  }
  EXPECT_RAISES(object.Put(u"ListIndex", {}, u"x"), RuntimeFailure(13));
  EXPECT_RAISES(object.Put(u"ListCount", {}, 1), RuntimeFailure(438));
  EXPECT_RAISES(object.Get(u"List", beyond), RuntimeFailure(9));
  EXPECT_RAISES(object.Get(u"List"), RuntimeFailure(5));
  EXPECT_RAISES(object.Get(u"ItemData", two), RuntimeFailure(5));
  EXPECT_EQ(box.currentIndex(), 1);
}

// Counts 30,000 rows, of which it has fetched none.
class SlowModel : public QStringListModel {
 public:
  using QStringListModel::QStringListModel;
  int rowCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : fetched_;
  }
  bool canFetchMore(const QModelIndex&) const override { return fetched_ < 30000; }
  void fetchMore(const QModelIndex&) override {
    beginInsertRows({}, fetched_, fetched_ + 499);
    fetched_ += 500;
    endInsertRows();
  }
  QVariant data(const QModelIndex& index, int role) const override {
    if (role == Qt::UserRole) return index.row() * 2;
    return role == Qt::DisplayRole ? QVariant(u"row %1"_s.arg(index.row())) : QVariant();
  }

 private:
  int fetched_ = 0;
};

TEST_F(Combo, OverAModelThatFetchesOnDemand) {
  SlowModel model;
  box.setModel(&model);
  EXPECT_EQ(object.Get(u"ListCount"), Variant(30000));
  ComboBoxEx::CmbSelectMatchString(object, u"ROW 29999");
  EXPECT_EQ(box.currentIndex(), 29999);
  EXPECT_EQ(ComboBoxEx::CmbCurrentItemData(object, 0), 59998);
  box.setModel(new QStandardItemModel(&box));
}

TEST(QtCombo, IsFailure91OnceDeleted) {
  auto box = std::make_unique<QComboBox>();
  const Object object = ComboOf(box.get());
  box.reset();
  EXPECT_RAISES(ComboBoxEx::CmbSelectItemData(object, 1), RuntimeFailure(91));
  EXPECT_TRUE(ComboOf(nullptr).IsEmpty());
}

class Database : public testing::Test {
 protected:
  Database() {
    database.setDatabaseName(u":memory:"_s);
    EXPECT_TRUE(database.open());
    QSqlQuery query(database);
    EXPECT_TRUE(
        query.exec(u"create table t (Nom text, Price decimal(19,4), Weight real, Paid "
                   u"boolean, Day date, Photo blob, Many integer, Rate text)"_s))
        << query.lastError().text().toStdString();
  }
  ~Database() override {
    database = QSqlDatabase();
    QSqlDatabase::removeDatabase(u"test"_s);
  }

  // What a row of these values reads back as.
  Object Stored(const std::vector<Variant>& values) {
    QSqlQuery query(database);
    query.exec(u"delete from t"_s);
    query.prepare(u"insert into t values (?, ?, ?, ?, ?, ?, ?, ?)"_s);
    for (const Variant& value : values) Bind(query, value);
    EXPECT_TRUE(query.exec()) << query.lastError().text().toStdString();
    query.exec(u"select * from t"_s);
    EXPECT_TRUE(query.next());
    return FieldsOf(query, {u"rate"_s});
  }

  QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"test"_s);
};

TEST_F(Database, KeepsWhatDbLibGives) {
  const std::vector<Variant> values{u"l'eau; drop table t",
                                    12.3456_cy,
                                    DbLib::DotStrNumToField(u"0.1"),
                                    DbLib::TriStateToBoolField(1),
                                    DbLib::StrDateToField(u"2026-12-24"),
                                    Array::OfBytes({0, 255}),
                                    7,
                                    0.05_cy};
  const Object fields = Stored(values);
  const std::array<StringView, 8> names{u"Nom", u"Price", u"Weight", u"Paid",
                                        u"Day", u"Photo", u"Many",   u"Rate"};
  EXPECT_EQ(fields.Get(u"Count"), Variant(8));
  for (std::size_t i = 0; i < names.size(); ++i) {
    EXPECT_EQ(DbLib::FieldPos(names[i], fields), static_cast<Int16>(i + 1));
    const Variant expected = names[i] == u"Day" ? Variant(u"2026-12-24") : values[i];
    EXPECT_EQ(FieldValue(fields, names[i]), expected) << Utf8(names[i]);
  }
  EXPECT_EQ(DbLib::DateFieldValue(FieldValue(fields, u"day")), DateOf({2026, 12, 24}));
  EXPECT_EQ(DbLib::TriStateFieldValue(FieldValue(fields, u"paid")), 1);
  EXPECT_EQ(DbLib::FieldPos(u"NOM", fields), 0);
}

TEST_F(Database, GivesNullAndDecimalsAsTheyAre) {
  const Object nulls = Stored(std::vector<Variant>(8, Null));
  for (Int16 i = 0; i < 8; ++i) {
    std::array<Variant, 1> index{i};
    EXPECT_EQ(ToObject(nulls.Get({}, index)).Get({}), Variant(Null)) << i;
  }
  struct Case {
    Variant bound, expected;
  };
  const std::vector<Case> rates{{922337203685477.5807_cy, 922337203685477.5807_cy},
                                {u"0.12345", 0.12345},
                                {u"1e20", 1e20},
                                {3, 3.0_cy},
                                {u"none", u"none"}};
  for (const Case& rate : rates) {
    const Object fields = Stored({Null, Null, Null, Null, Null, Null, Null, rate.bound});
    EXPECT_EQ(FieldValue(fields, u"Rate"), rate.expected);
  }
  const Object fine = Stored({Null, 0.12345, Null, Null, Null, Null, Null, Null});
  EXPECT_EQ(FieldValue(fine, u"Price"), Variant(0.12345)) << "more decimals than an amount holds";
}

TEST_F(Database, SaysWhichFieldItLacks) {
  const Object fields = Stored(std::vector<Variant>(8, Null));
  std::array<Variant, 1> eight{8}, below{-1};
  EXPECT_RAISES(fields.Get({}, eight), RuntimeFailure(9));
  EXPECT_RAISES(fields.Get(u"Item", below), RuntimeFailure(9));
  EXPECT_RAISES(FieldValue(fields, u"Prix"), RuntimeFailure(9));
  EXPECT_RAISES(fields.Get({}), RuntimeFailure(5));
  EXPECT_RAISES(fields.Get(u"EOF"), RuntimeFailure(438));
  EXPECT_RAISES(fields.Put(u"Count", {}, 1), RuntimeFailure(438));
  QSqlQuery query(database);
  query.prepare(u"insert into t (Nom) values (:nom)"_s);
  EXPECT_RAISES(Bind(query, u":nom"_s, Missing), RuntimeFailure(13));
  Bind(query, u":nom"_s, Variant(u"x"));
  EXPECT_TRUE(query.exec());
  EXPECT_EQ(DbLib::FieldPos(u"x", Variant(FieldsOf(QSqlRecord()))), 0);
}

// Drivers that give decimals digit by digit, as they do when asked for high precision.
TEST(QtFields, ReadDecimalsOfOtherDrivers) {
  QSqlRecord record;
  QSqlField field(u"Sum"_s, QMetaType::fromType<double>());
  field.setValue(u"1234567890123.4567"_s);
  record.append(field);
  EXPECT_EQ(FieldValue(FieldsOf(record), u"sum"), Variant(1234567890123.4567_cy));
}

TEST(QtKeys, ThePointOfTheNumericPadTypesTheDecimalMark) {
  MemoryStore store;
  const ScopedStore in_memory(store);
  const LocaleScope french(*Locale::Named(u"fr-BE"));
  Regional regional;
  QLineEdit pad, all;
  new DecimalKeyFilter(&pad, DecimalKeys::kNumericPad, regional);
  new DecimalKeyFilter(&all, DecimalKeys::kEvery, regional);
  new DecimalKeyFilter(nullptr, DecimalKeys::kEvery, regional);
  for (QLineEdit* edit : {&pad, &all}) {
    QTest::keyClicks(edit, u"1.2"_s);
    QTest::keyClick(edit, Qt::Key_Period, Qt::KeypadModifier);
    QTest::keyClicks(edit, u"5"_s);
  }
  EXPECT_EQ(pad.text(), u"1.2,5"_s);
  EXPECT_EQ(all.text(), u"1,2,5"_s);
}

}  // namespace
}  // namespace quorl::qt
