#include "controls/EVSegmentedControl.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QToolButton>

EVSegmentedControl::EVSegmentedControl(QWidget *parent)
    : QWidget(parent)
    , m_segments(new QButtonGroup(this))
{
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    m_segments->setExclusive(true);
    connect(m_segments, &QButtonGroup::idClicked, this, &EVSegmentedControl::activated);
    setSegmentLabels({tr("On"), tr("Off")});
}

QStringList EVSegmentedControl::segmentLabels() const
{
    QStringList labels;
    for (int i = 0; i < segmentCount(); ++i)
        labels << segmentButton(i)->text();
    return labels;
}

void EVSegmentedControl::setSegmentLabels(const QStringList &labels)
{
    const QList<QAbstractButton *> old = m_segments->buttons();
    for (QAbstractButton *button : old) {
        m_segments->removeButton(button);
        delete button;
    }
    for (qsizetype i = 0; i < labels.size(); ++i) {
        auto *button = new QToolButton(this);
        button->setText(labels.at(i));
        button->setCheckable(true);
        button->setFocusPolicy(Qt::StrongFocus);
        button->setObjectName(QStringLiteral("segment%1").arg(i));
        button->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
        // Segments of one control are equally wide, whatever their labels.
        button->setMinimumWidth(44);
        m_segments->addButton(button, int(i));
        layout()->addWidget(button);
    }
    setSelectedSegment(0);
}

int EVSegmentedControl::segmentCount() const
{
    return int(m_segments->buttons().size());
}

int EVSegmentedControl::selectedSegment() const
{
    return m_segments->checkedId();
}

void EVSegmentedControl::setSelectedSegment(int segment)
{
    if (QAbstractButton *button = m_segments->button(segment))
        button->setChecked(true);
}

QAbstractButton *EVSegmentedControl::segmentButton(int segment) const
{
    return m_segments->button(segment);
}
