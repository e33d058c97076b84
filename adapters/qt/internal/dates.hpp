// Days of the calendar and the toolkit's dates.
#pragma once

#include <QDate>
#include <QTime>
#include <QVariant>

#include "quorl/runtime/variant.hpp"

namespace quorl::qt {

/// The day that a Date of 0 stands for.
inline const QDate kFirstDay{1899, 12, 30};

/// Null for an invalid day or time; failure 6 outside the calendar.
Variant DateFromQt(QDate day, QTime time);

/// QDate, QTime or QDateTime; failure 6 outside the calendar.
QVariant DateToQt(Date date);

}  // namespace quorl::qt
