#pragma once

#include <QLabel>

/** The text beside a control. */
class QlirnLabel : public QLabel
{
    Q_OBJECT

public:
    using QLabel::QLabel;
};
