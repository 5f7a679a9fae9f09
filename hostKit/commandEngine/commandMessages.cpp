#include "commandEngine/commandMessages.h"

namespace s_HiceExceptionStrings {

Tstring rELFmaxValueMustBeGreaterThanMinValue("The maximum value must be greater than the minimum value.");
Tstring rELFvalueMustBeGreaterThanOrEqualToMinValue("The value must be greater than or equal to the minimum value.");
Tstring rELFvalueMustBeLessThanOrEqualToMaxValue("The value must be less than or equal to the maximum value.");

} // namespace s_HiceExceptionStrings

Tstring commandMessage(const Tstring& key)
{
    using namespace s_HiceExceptionStrings;
    const struct
    {
        const char* key;
        const Tstring& text;
    } texts[] = {
        {"s_HiceExceptionStrings.rELFmaxValueMustBeGreaterThanMinValue", rELFmaxValueMustBeGreaterThanMinValue},
        {"s_HiceExceptionStrings.rELFvalueMustBeGreaterThanOrEqualToMinValue",
         rELFvalueMustBeGreaterThanOrEqualToMinValue},
        {"s_HiceExceptionStrings.rELFvalueMustBeLessThanOrEqualToMaxValue", rELFvalueMustBeLessThanOrEqualToMaxValue},
    };
    for (const auto& each : texts)
        if (key == each.key)
            return each.text;
    return key;
}
