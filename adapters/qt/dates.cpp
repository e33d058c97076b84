#include "internal/dates.hpp"

#include <QDateTime>
#include <cmath>

#include "quorl/runtime/raised_error.hpp"

namespace quorl::qt {
namespace {

constexpr Double kMillisecondsOfDay = 86400000;

QVariant MomentToQt(QDate day, QTime time) {
  const QDateTime local(day, time);
  const bool is_kept = local.isValid() && local.date() == day && local.time() == time;
  return is_kept ? local : QDateTime(day, time, Qt::UTC);
}

}  // namespace

Variant DateFromQt(QDate day, QTime time) {
  if (!day.isValid() || !time.isValid()) return Null;
  const Double whole = static_cast<Double>(kFirstDay.daysTo(day));
  const Double fraction = time.msecsSinceStartOfDay() / kMillisecondsOfDay;
  // The fraction counts forward from midnight below 0 too.
  const Double days = whole < 0 ? whole - fraction : whole + fraction;
  if (!IsDateNumber(days)) Raise(FailureNumber::kOverflow);
  return Date(days);
}

QVariant DateToQt(Date date) {
  if (!IsDateNumber(date.Days())) Raise(FailureNumber::kOverflow);
  const Double whole = std::trunc(date.Days());
  const auto milliseconds =
      static_cast<int>(std::lround(std::fabs(date.Days() - whole) * kMillisecondsOfDay));
  const int carried = milliseconds / static_cast<int>(kMillisecondsOfDay);
  const QDate day = kFirstDay.addDays(static_cast<qint64>(whole) + carried);
  const QTime time = QTime::fromMSecsSinceStartOfDay(carried == 0 ? milliseconds : 0);
  if (time == QTime(0, 0)) return day;
  return day == kFirstDay ? QVariant(time) : MomentToQt(day, time);
}

}  // namespace quorl::qt
