#pragma once

#include "foundation/Tstring.h"

/** Texts of the commands that a program may put in its own language. */
namespace s_HiceExceptionStrings {

extern Tstring rELFmaxValueMustBeGreaterThanMinValue;
extern Tstring rELFvalueMustBeGreaterThanOrEqualToMinValue;
extern Tstring rELFvalueMustBeLessThanOrEqualToMaxValue;

} // namespace s_HiceExceptionStrings

/** The text of a message key such as "s_HiceExceptionStrings.rELFmaxValueMustBeGreaterThanMinValue"; what is no key is
 * a text itself. */
Tstring commandMessage(const Tstring& key);
