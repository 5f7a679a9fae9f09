#pragma once

#include "Graphics/Export.h"
#include "commandEngine/TiceControlBaseCmd.h"
#include "ui/QlirnStaticPicture.h"

#include <QPointer>

/** The command "image": a control that shows a picture. Flag besides those of every control: image, the picture's file.
 */
class LIRN_3DGRAPHICS_EXPORT TiceStaticImageCmd : public TiceControlBaseCmd
{
public:
    explicit TiceStaticImageCmd(const char* name);

    int doEditFlags() override;
    int doQueryFlags() override;
    void clear() override;
    bool appendSyntax() override;
    bool makeControl() override;
    void deleteControl() override;
    bool findPtrs() override;
    QWidget* qControl() const override;

private:
    QPointer<QlirnStaticPicture> fControl;
};
