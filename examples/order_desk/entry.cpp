#include "entry.hpp"

#include "quorl/fields/db_lib.hpp"
#include "quorl/money/money.hpp"
#include "quorl/numeric/dates.hpp"
#include "quorl/numeric/math.hpp"
#include "quorl/qt/fields.hpp"
#include "quorl/qt/values.hpp"
#include "quorl/runtime/arithmetic.hpp"
#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/date_text.hpp"
#include "quorl/runtime/number_text.hpp"
#include "quorl/runtime/raised_error.hpp"
#include "quorl/text/strings.hpp"

namespace desk {

using namespace Qt::StringLiterals;
using namespace quorl;
using qt::FieldValue;
using qt::Lend;
using qt::ToQString;

namespace {

constexpr StringView kAmount = u"#,##0.00";
// A price may have up to four decimals, of which two are always written.
constexpr StringView kPrice = u"#,##0.00##";

std::optional<Currency> ReadPrice(const QString& text) {
  Currency price;
  const bool is_good = ReadCurrency(Lend(text), Locale::Current(), price) == NumberReading::kGood;
  return is_good && price >= Currency() ? std::optional(price) : std::nullopt;
}

std::optional<Double> ReadQuantity(const QString& text) {
  const Variant quantity = DbLib::StrNumToField(Lend(text));
  if (quantity.IsNull() || ToDouble(quantity) <= 0) return std::nullopt;
  return ToDouble(quantity);
}

// The days on which something can be delivered.
bool IsDay(const QString& text) {
  const Variant date = DbLib::StrDateToField(Lend(text));
  if (date.IsNull()) return true;
  const CalendarTime time = CalendarTimeOf(ToDate(date));
  return ToDate(date) == DateOf({time.year, time.month, time.day}) && time.year >= 2000 &&
         time.year < 2100;
}

std::optional<Currency> RoundedTotal(Currency price, Double quantity) {
  try {
    return ToCurrency(Math::StdRound(Multiply(Variant(price), Variant(quantity)), 2));
  } catch (const RaisedError&) {
    return std::nullopt;
  }
}

QString PriceFault(const QString& text) {
  if (ReadPrice(text)) return {};
  return u"A price such as %1"_s.arg(AmountText(Currency::FromTenThousandths(12345000)));
}

QString QuantityFault(const Entry& entry) {
  if (!ReadQuantity(entry.quantity)) return u"A quantity above 0"_s;
  if (ReadPrice(entry.price) && !TotalOf(entry)) return u"More than the desk can count"_s;
  return {};
}

QString DeliveryFault(const QString& text) {
  if (Dates::IsDateOrEmpty(Lend(text)) && IsDay(text)) return {};
  const String sample = WriteDate(DateOf({2026, 12, 24}));
  return u"A day such as %1"_s.arg(ToQString(sample));
}

Money Euros() {
  Money euros;
  euros.Unit = u"euro";
  euros.Units = u"euros";
  euros.SubUnit = u"cent";
  euros.SubUnits = u"cents";
  euros.SubUnitRow = 2;
  return euros;
}

QString PriceText(Currency price) { return ToQString(FormatNumber(price, kPrice)); }

}  // namespace

std::vector<Fault> FaultsOf(const Entry& entry) {
  std::vector<Fault> faults;
  const auto add = [&](EntryField field, const QString& message) {
    if (!message.isEmpty()) faults.push_back({field, message});
  };
  add(EntryField::kCustomer,
      entry.customer == 0 ? u"Choose a customer from the list"_s : QString());
  add(EntryField::kArticle,
      Strings::IsEmptyString(Lend(entry.article)) ? u"Say what is ordered"_s : QString());
  add(EntryField::kPrice, PriceFault(entry.price));
  add(EntryField::kQuantity, QuantityFault(entry));
  add(EntryField::kDelivery, DeliveryFault(entry.delivery));
  return faults;
}

Order OrderOf(int number, const Entry& entry) {
  return {number,
          entry.customer,
          DbLib::StrToField(Lend(entry.article)),
          ReadPrice(entry.price).value(),
          ReadQuantity(entry.quantity).value(),
          DbLib::StrDateToField(Lend(entry.delivery)),
          DbLib::TriStateToBoolField(static_cast<Int16>(entry.paid))};
}

Entry EntryOf(const Object& fields) {
  Entry entry;
  entry.customer = ToInt32(FieldValue(fields, u"customer"));
  entry.article = ToQString(DbLib::StrFieldValue(FieldValue(fields, u"article")));
  entry.price = PriceText(ToCurrency(FieldValue(fields, u"price")));
  entry.quantity = ToQString(DbLib::StrFieldValue(FieldValue(fields, u"quantity")));
  entry.delivery = ToQString(DbLib::StrDateFieldValue(FieldValue(fields, u"delivery")));
  entry.paid = DbLib::TriStateFieldValue(FieldValue(fields, u"paid"));
  return entry;
}

std::optional<Currency> TotalOf(const Entry& entry) {
  const std::optional<Currency> price = ReadPrice(entry.price);
  const std::optional<Double> quantity = ReadQuantity(entry.quantity);
  if (!price || !quantity) return std::nullopt;
  return RoundedTotal(*price, *quantity);
}

Currency TotalOf(const Object& fields) {
  return RoundedTotal(ToCurrency(FieldValue(fields, u"price")),
                      ToDouble(FieldValue(fields, u"quantity")))
      .value_or(Currency());
}

QString AmountText(const Variant& amount) { return ToQString(FormatNumber(amount, kAmount)); }

QString AmountInWords(Currency amount, const QString& language) {
  static Money euros = Euros();
  euros.Language = Lend(language);
  try {
    return ToQString(euros.ToText(amount));
  } catch (const RaisedError&) {
    return {};
  }
}

Entry Rewritten(Entry entry, const Locale& former) {
  Currency price;
  if (ReadCurrency(Lend(entry.price), former, price) == NumberReading::kGood) {
    entry.price = PriceText(price);
  }
  Double quantity = 0;
  if (ReadDouble(Lend(entry.quantity), former, quantity) == NumberReading::kGood) {
    entry.quantity = ToQString(ToString(quantity));
  }
  return entry;
}

}  // namespace desk
