// Key presses of an entry field on their way through `Regional::ConvertDecimalPoint`: the point of
// the numeric pad types the user's decimal mark.
#pragma once

#include <QObject>
#include <QWidget>

#include "quorl/regional/global_instance.hpp"
#include "quorl/regional/regional.hpp"

namespace quorl::qt {

/// Which keys are sent through it.
enum class DecimalKeys {
  kNumericPad,  ///< Those of the numeric pad; a point elsewhere stays one, for thousands.
  kEvery,       ///< Every key that types one character.
};

/// Filters the keys of one field, as long as the filter or the field lives: the filter is the
/// field's child. `regional` is lent and outlives it. What is typed is decided at each key press by
/// what `regional` remembers then; call its `GetRegional` after a change of separators. Where there
/// is no decimal separator the key stays what it is. Called from the thread of the widgets.
///
///     new DecimalKeyFilter(price_edit);
class DecimalKeyFilter : public QObject {
 public:
  /// Nothing is filtered for a null `field`. Failures of making the hidden instance of `Regional`.
  explicit DecimalKeyFilter(QWidget* field, DecimalKeys keys = DecimalKeys::kNumericPad,
                            const Regional& regional = GlobalInstance<Regional>());

  bool eventFilter(QObject* field, QEvent* event) override;

 private:
  DecimalKeys keys_;
  const Regional& regional_;
};

}  // namespace quorl::qt
