#pragma once

class LUMDatePicker;

// Asked by a date field before its calendar popover opens.
class LUMDatePickerDelegate
{
public:
    virtual ~LUMDatePickerDelegate() = default;

    // False keeps the popover closed; a delegate that does not care lets it open.
    virtual bool datePickerShouldShowPopover(LUMDatePicker *) { return true; }
};
