#pragma once

#include <QObject>

class EVPerferenceController;

// The sheet that adds a custom background style to the selected widget: a picture file or a
// colour, either at an opacity. A widget holds at most six custom styles. The sheet keeps its
// values from one use to the next.
class EVCustomStylePanel : public QObject
{
    Q_OBJECT

public:
    static constexpr int customStyleQuota = 6;
    // Pictures wider than this are scaled down to it.
    static constexpr int pictureWidth = 400;
    // Rows of the type choice.
    static constexpr int pictureRow = 0;
    static constexpr int colorRow = 1;

    explicit EVCustomStylePanel(EVPerferenceController *controller);

    // Connects the sheet's controls; once, with the window.
    void setup();

    // Selects the type in that row and enables the controls that belong to it.
    void updateCustomStyleType(int row);

public Q_SLOTS:
    // Opens the sheet, or says that the widget has no room for another style.
    void onCustomStyle();
    void onCustomStyleDone();
    void onCustomStyleCancel();

private Q_SLOTS:
    void onCustomStyleTypeChanged();
    void onCustomStyleOpacityChanged();
    void onBrowseStyleImage();
    void onChangeStyleColor();
    void customPanelDidEnd();

private:
    // The new style goes into the browser and becomes the widget's style.
    void showNewStyle();

    EVPerferenceController *m_controller;
};
