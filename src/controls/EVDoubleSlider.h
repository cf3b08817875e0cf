#pragma once

#include <QSlider>

// A slider whose value is a fraction, not only a whole number: it moves in hundredths between
// its minimum and maximum value, 0 and 100 unless set otherwise.
class EVDoubleSlider : public QSlider
{
    Q_OBJECT
    Q_PROPERTY(double doubleValue READ doubleValue WRITE setDoubleValue)
    Q_PROPERTY(double minimumValue READ minimumValue WRITE setMinimumValue)
    Q_PROPERTY(double maximumValue READ maximumValue WRITE setMaximumValue)

public:
    static constexpr int stepsPerUnit = 100;

    explicit EVDoubleSlider(QWidget *parent = nullptr);

    double doubleValue() const { return double(value()) / stepsPerUnit; }
    void setDoubleValue(double value);
    double minimumValue() const { return double(minimum()) / stepsPerUnit; }
    void setMinimumValue(double value);
    double maximumValue() const { return double(maximum()) / stepsPerUnit; }
    void setMaximumValue(double value);

Q_SIGNALS:
    void doubleValueChanged(double value);
};
