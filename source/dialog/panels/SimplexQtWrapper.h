#pragma once
// SimplexQtWrapper: the "Simplex" page. Its one control stores the noise
// scale through the texture's setter and sends the change to the host.

#include "dialog/QtWrapperBase.h"
#include "textures/SimplexTexture3D.h"
#include "ui_SimplexWidget.h"

namespace gritwell {

class SimplexQtWrapper : public QtWrapperBase {
    Q_OBJECT

public:
    explicit SimplexQtWrapper(SimplexTexture3D* texture, ImageArea* imageArea, Ui_SimplexWidget* ui, QWidget* page,
                              QObject* parent);
    ~SimplexQtWrapper() override = default;

    // The scale from the texture's field, then the interactive-update button
    // and the tracking of this page's control.
    void updateUI() override;
    // Keyboard tracking of the scale spin box.
    void setInteractivity(bool on);

public slots:
    void interactiveUpdateToggled(bool on);
    // The texture's scale. It hides QtWrapperBase::scaleChanged, the common
    // block's overall scale, which stays connected to the base's own slot.
    void scaleChanged(double value);

private:
    Ui_SimplexWidget* ui_;
    SimplexTexture3D* texture_;
};

}  // namespace gritwell
