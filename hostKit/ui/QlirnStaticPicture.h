#pragma once

#include "foundation/Tstring.h"

#include <QLabel>

/** Shows an image, and can't be worked. */
class QlirnStaticPicture : public QLabel
{
    Q_OBJECT

public:
    explicit QlirnStaticPicture(QWidget* parent = nullptr);

    /**
     * Shows the image in the file of that name, of a format that Qt reads; nothing for an empty name. A file that can't
     * be read shows nothing and is reported to the error handler as a warning.
     */
    void setPicture(const Tstring& picture);

    /** The name last set, whether it could be read or not. */
    const Tstring& picture() const { return fPicture; }

private:
    Tstring fPicture;
};
