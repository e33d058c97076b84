// The whole library for C++ hosts: its classes, and the values and failures that they take and
// give. Each class can be included alone; its header is its manual.
#pragma once

#include "quorl/buffer/roll_buffer.hpp"
#include "quorl/fields/db_lib.hpp"
#include "quorl/forms/combo_box_ex.hpp"
#include "quorl/forms/forms.hpp"
#include "quorl/money/money.hpp"
#include "quorl/numeric/dates.hpp"
#include "quorl/numeric/math.hpp"
#include "quorl/regional/global_instance.hpp"
#include "quorl/regional/guids.hpp"
#include "quorl/regional/regional.hpp"
#include "quorl/registry/registry.hpp"
#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/enumerations.hpp"
#include "quorl/runtime/locale.hpp"
#include "quorl/runtime/number_text.hpp"
#include "quorl/runtime/raised_error.hpp"
#include "quorl/runtime/screen.hpp"
#include "quorl/runtime/utf.hpp"
#include "quorl/runtime/variant.hpp"
#include "quorl/text/strings.hpp"
