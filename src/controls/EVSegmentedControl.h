#pragma once

#include <QStringList>
#include <QWidget>

class QAbstractButton;
class QButtonGroup;

// A row of exclusive segments, one of them selected, like the two-way switches of a toolbar.
// It starts with the two segments "On" (0) and "Off" (1).
class EVSegmentedControl : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QStringList segmentLabels READ segmentLabels WRITE setSegmentLabels)
    Q_PROPERTY(int selectedSegment READ selectedSegment WRITE setSelectedSegment)

public:
    explicit EVSegmentedControl(QWidget *parent = nullptr);

    QStringList segmentLabels() const;
    // Makes one segment per label; the first one is selected.
    void setSegmentLabels(const QStringList &labels);
    int segmentCount() const;

    // The selected segment; -1 when there are no segments.
    int selectedSegment() const;
    // Selects the segment without sending activated(); an index out of range changes nothing.
    void setSelectedSegment(int segment);

    QAbstractButton *segmentButton(int segment) const;

Q_SIGNALS:
    // The user clicked a segment; it is selected now.
    void activated(int segment);

private:
    QButtonGroup *m_segments;
};
