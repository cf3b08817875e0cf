#pragma once

#include <QDialog>

// The About window: the application's icon, name, version and what it is for, in one line.
// Shown without blocking anything; closing it only hides it.
class EVAboutBox : public QDialog
{
    Q_OBJECT

public:
    explicit EVAboutBox(QWidget *parent = nullptr);
};
