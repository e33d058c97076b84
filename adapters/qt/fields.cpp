#include "quorl/qt/fields.hpp"

#include <QSqlField>
#include <array>
#include <utility>

#include "internal/host_object.hpp"
#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/number_text.hpp"

namespace quorl::qt {
namespace {

bool IsNumber(QMetaType type) {
  return type.id() == QMetaType::Int || type.id() == QMetaType::LongLong ||
         type.id() == QMetaType::Double;
}

// The driver's type of a value beside the declared one tells decimals: digits of a field of
// numbers, or a number of a field whose declared type the driver does not know.
bool IsDecimal(const QSqlField& field) {
  const QMetaType given = field.value().metaType();
  const bool is_digits = given.id() == QMetaType::QString;
  return is_digits ? field.metaType().id() == QMetaType::Double
                   : IsNumber(given) && field.metaType().id() == QMetaType::QString;
}

Variant FromDigits(StringView digits) {
  const Locale plain;
  Double nearest = 0;
  Currency amount;
  if (ReadDouble(digits, plain, nearest) != NumberReading::kGood) return digits;
  // More decimals than four would be rounded off.
  const std::size_t point = digits.find(u'.');
  const bool has_few_decimals =
      digits.find_first_of(u"eE") == StringView::npos &&
      (point == StringView::npos || digits.find_last_not_of(u"0 ") <= point + 4);
  const bool fits = has_few_decimals && ReadCurrency(digits, plain, amount) == NumberReading::kGood;
  return fits ? Variant(amount) : Variant(nearest);
}

Variant FromNumber(Double number) {
  constexpr Double kBeyond = 922337203685477.0;
  if (!(number > -kBeyond && number < kBeyond)) return number;
  const Currency amount = ToCurrency(number);
  return ToDouble(amount) == number ? Variant(amount) : Variant(number);
}

Variant FromField(const QSqlField& field, bool is_decimal) {
  const QVariant value = field.value();
  if (value.isNull()) return Null;
  if (field.metaType().id() == QMetaType::Bool && IsNumber(value.metaType())) return value.toBool();
  if (!is_decimal && !IsDecimal(field)) return FromQt(value);
  return value.metaType().id() == QMetaType::QString ? FromDigits(Lend(value.toString()))
                                                     : FromNumber(value.toDouble());
}

class Field final : public WithMembers<Field, LateBound> {
 public:
  Field(const QSqlField& field, bool is_decimal) : field_(field), is_decimal_(is_decimal) {}

  Variant Name(Arguments) { return FromQString(field_.name()); }
  Variant Value(Arguments) { return FromField(field_, is_decimal_); }

  static const Member<Field> kMembers[3];

 private:
  QSqlField field_;
  bool is_decimal_;
};

const Member<Field> Field::kMembers[3] = {
    {u"Name", &Field::Name}, {u"Value", &Field::Value}, {u"", &Field::Value}};

class Fields final : public WithMembers<Fields, LateBound> {
 public:
  Fields(QSqlRecord record, QStringList decimals)
      : record_(std::move(record)), decimals_(std::move(decimals)) {}

  Variant Count(Arguments) { return Int32{record_.count()}; }
  Variant Item(Arguments arguments) {
    const int index = IndexOf(OnlyOne(arguments));
    if (index < 0 || index >= record_.count()) Raise(FailureNumber::kSubscriptOutOfRange);
    const QSqlField field = record_.field(index);
    return MakeObject<Field>(field, decimals_.contains(field.name(), Qt::CaseInsensitive));
  }

  static const Member<Fields> kMembers[3];

 private:
  int IndexOf(const Variant& index) const {
    if (!index.Holds<String>()) return ToInt32(index);
    const QString name = ToQString(*index.If<String>());
    // A record takes the part of a name before a dot for a table's.
    for (int i = 0; i < record_.count(); ++i) {
      if (record_.fieldName(i).compare(name, Qt::CaseInsensitive) == 0) return i;
    }
    return -1;
  }

  QSqlRecord record_;
  QStringList decimals_;
};

const Member<Fields> Fields::kMembers[3] = {
    {u"Count", &Fields::Count}, {u"Item", &Fields::Item}, {u"", &Fields::Item}};

}  // namespace

Object FieldsOf(const QSqlRecord& record, const QStringList& decimals) {
  return MakeObject<Fields>(record, decimals);
}

Object FieldsOf(const QSqlQuery& query, const QStringList& decimals) {
  return FieldsOf(query.record(), decimals);
}

Variant FieldValue(const Object& fields, StringView name) {
  std::array<Variant, 1> index{name};
  return RequireObject(fields.Get({}, index)).Get(u"Value");
}

void Bind(QSqlQuery& query, const Variant& value) { query.addBindValue(ToQt(value)); }

void Bind(QSqlQuery& query, const QString& placeholder, const Variant& value) {
  query.bindValue(placeholder, ToQt(value));
}

}  // namespace quorl::qt
