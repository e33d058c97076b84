#include "quorl/qt/values.hpp"

#include <QDateTime>
#include <QStringList>
#include <QUuid>
#include <cmath>
#include <cstring>
#include <limits>

#include "internal/dates.hpp"
#include "quorl/qt/object.hpp"
#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/number_text.hpp"
#include "quorl/runtime/raised_error.hpp"

namespace quorl::qt {
namespace {

template <class Whole>
Variant FromWhole(Whole number) {
  if (std::in_range<Int32>(number)) return static_cast<Int32>(number);
  const Double nearest = static_cast<Double>(number);
  // Of the numbers that round up to the type's end none is exact.
  const bool is_exact = nearest < std::ldexp(1.0, std::numeric_limits<Whole>::digits) &&
                        static_cast<Whole>(nearest) == number;
  if (!is_exact) Raise(FailureNumber::kOverflow);
  return nearest;
}

Array FromBytes(const QByteArray& bytes) {
  return Array::OfBytes(std::vector<Byte>(bytes.begin(), bytes.end()));
}

template <class List>
Array FromList(VariantType element, const List& list) {
  Array array(element, {{0, static_cast<std::uint32_t>(list.size())}});
  const std::span<Variant> places = array.WritableElements();
  for (qsizetype i = 0; i < list.size(); ++i) {
    places[static_cast<std::size_t>(i)] = FromQt(list[i]);
  }
  return array;
}

bool IsOfWholeNumber(QMetaType type) {
  return type.flags().testFlag(QMetaType::IsEnumeration) || type.id() == QMetaType::Long ||
         type.id() == QMetaType::LongLong;
}

// Flags of a class register themselves under their own type and convert to a whole number.
Variant FromOther(const QVariant& value) {
  if (value.metaType() == QMetaType::fromType<Currency>()) return value.value<Currency>();
  const QMetaType type = value.metaType();
  if (IsOfWholeNumber(type)) return FromWhole<qint64>(value.toLongLong());
  const bool is_flags = type.name() != nullptr && std::strncmp(type.name(), "QFlags<", 7) == 0;
  if (is_flags && type.sizeOf() == sizeof(int)) {
    return *static_cast<const int*>(value.constData());
  }
  Raise(FailureNumber::kTypeMismatch);
}

QVariant ToList(const Array& array) {
  if (array.Dimensions() != 1) Raise(FailureNumber::kTypeMismatch);
  if (array.ElementType() == VariantType::kByte) {
    const std::span<const Byte> bytes = array.Bytes();
    return QByteArray(reinterpret_cast<const char*>(bytes.data()),
                      static_cast<qsizetype>(bytes.size()));
  }
  QVariantList list;
  for (const Variant& element : array.Elements()) list.append(ToQt(element));
  if (array.ElementType() == VariantType::kString) return QVariant(list).toStringList();
  return list;
}

// An amount's digits, as SQL wants them.
QString DigitsOf(Currency amount) { return ToQString(FormatNumber(amount, u"0.0000", Locale{})); }

QVariant AmountToQt(Currency amount) {
  static const bool registered = QMetaType::registerConverter<Currency, QString>(DigitsOf) &&
                                 QMetaType::registerConverter<Currency, double>(
                                     [](Currency value) { return ToDouble(value); });
  static_cast<void>(registered);
  return QVariant::fromValue(amount);
}

QVariant ObjectToQt(const Object& object) {
  if (object.IsEmpty()) return QVariant::fromValue<QObject*>(nullptr);
  if (!IsOfQt(object)) Raise(FailureNumber::kTypeMismatch);
  return QVariant::fromValue(QObjectOf(object));
}

struct ToQtVisitor {
  QVariant operator()(EmptyState) const { return {}; }
  QVariant operator()(NullState) const { return QVariant::fromValue(nullptr); }
  QVariant operator()(MissingState) const { Raise(FailureNumber::kTypeMismatch); }
  QVariant operator()(Date date) const { return DateToQt(date); }
  QVariant operator()(Currency amount) const { return AmountToQt(amount); }
  QVariant operator()(const String& text) const { return ToQString(text); }
  QVariant operator()(const Object& object) const { return ObjectToQt(object); }
  QVariant operator()(const Array& array) const { return ToList(array); }
  template <class Plain>
  QVariant operator()(Plain value) const {
    return QVariant::fromValue(value);
  }
};

}  // namespace

Variant FromQt(const QVariant& value) {
  if (!value.isValid()) return Empty;
  if (value.metaType().flags().testFlag(QMetaType::PointerToQObject)) {
    return ObjectOf(value.value<QObject*>());
  }
  if (value.isNull()) return Null;
  switch (value.metaType().id()) {
    case QMetaType::Bool:
      return value.toBool();
    case QMetaType::UChar:
      return value.value<Byte>();
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::Short:
      return static_cast<Int16>(value.toInt());
    case QMetaType::UShort:
    case QMetaType::Int:
      return Int32{value.toInt()};
    case QMetaType::UInt:
    case QMetaType::ULong:
    case QMetaType::ULongLong:
      return FromWhole<quint64>(value.toULongLong());
    case QMetaType::Float:
      return value.toFloat();
    case QMetaType::Double:
      return value.toDouble();
    case QMetaType::QDate:
      return DateFromQt(value.toDate(), QTime(0, 0));
    case QMetaType::QTime:
      return DateFromQt(kFirstDay, value.toTime());
    case QMetaType::QDateTime:
      return DateFromQt(value.toDateTime().date(), value.toDateTime().time());
    case QMetaType::QString:
    case QMetaType::QChar:
      return FromQString(value.toString());
    case QMetaType::QUuid:
      return FromQString(value.toUuid().toString().toUpper());
    case QMetaType::QByteArray:
      return FromBytes(value.toByteArray());
    case QMetaType::QStringList:
      return FromList(VariantType::kString, value.toStringList());
    case QMetaType::QVariantList:
      return FromList(VariantType::kVariant, value.toList());
    default:
      return FromOther(value);
  }
}

QVariant ToQt(const Variant& value) { return value.Visit(ToQtVisitor{}); }

}  // namespace quorl::qt
