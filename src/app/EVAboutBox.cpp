#include "app/EVAboutBox.h"

#include "core/EVAppImage.h"
#include "core/EVAppInfo.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

EVAboutBox::EVAboutBox(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("aboutBox"));
    setWindowTitle(tr("About %1").arg(EVAppInfo::name()));

    auto *icon = new QLabel(this);
    icon->setPixmap(EVAppImage::applicationIcon().pixmap(96, 96));
    auto *name = new QLabel(QStringLiteral("<b>%1</b>").arg(EVAppInfo::name()), this);
    QFont nameFont = name->font();
    nameFont.setPixelSize(22);
    name->setFont(nameFont);
    auto *version = new QLabel(tr("Version %1").arg(EVAppInfo::version()), this);
    version->setObjectName(QStringLiteral("aboutVersion"));
    auto *line = new QLabel(tr("Countdown widgets for your desktop."), this);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);

    auto *texts = new QVBoxLayout;
    texts->addWidget(name);
    texts->addWidget(version);
    texts->addSpacing(8);
    texts->addWidget(line);
    texts->addStretch();
    auto *top = new QHBoxLayout;
    top->addWidget(icon, 0, Qt::AlignTop);
    top->addSpacing(16);
    top->addLayout(texts);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);
}
