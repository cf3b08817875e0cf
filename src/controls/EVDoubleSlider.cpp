#include "controls/EVDoubleSlider.h"

#include <cmath>

EVDoubleSlider::EVDoubleSlider(QWidget *parent)
    : QSlider(Qt::Horizontal, parent)
{
    setRange(0, 100 * stepsPerUnit);
    // The keys move by whole units and tens of them.
    setSingleStep(stepsPerUnit);
    setPageStep(10 * stepsPerUnit);
    connect(this, &QSlider::valueChanged, this,
            [this] { Q_EMIT doubleValueChanged(doubleValue()); });
}

void EVDoubleSlider::setDoubleValue(double value)
{
    setValue(int(std::lround(value * stepsPerUnit)));
}

void EVDoubleSlider::setMinimumValue(double value)
{
    setMinimum(int(std::lround(value * stepsPerUnit)));
}

void EVDoubleSlider::setMaximumValue(double value)
{
    setMaximum(int(std::lround(value * stepsPerUnit)));
}
