#pragma once

class EVSegmentedControl;
class QAbstractButton;

// Receives what the user does in the preferences window's toolbar; each operation takes the
// control that was clicked. The application shell implements it.
class EVPerferenceToolBarActionDelegate
{
public:
    virtual ~EVPerferenceToolBarActionDelegate() = default;

    // The open-at-login switch: segment 0 is on, segment 1 off.
    virtual void perferenceToolBarOpenAtLoginStateDidChanged(EVSegmentedControl *sender) = 0;
    // The status-bar icon switch: segment 0 is on, segment 1 off.
    virtual void perferenceToolBarStatusBarIconStateDidChanged(EVSegmentedControl *sender) = 0;
    virtual void perferenceToolBarFeedbackClicked(QAbstractButton *sender) = 0;
};
