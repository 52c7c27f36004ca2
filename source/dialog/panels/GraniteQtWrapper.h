#pragma once
// GraniteQtWrapper: the "Granite" page. Each control stores its value
// through the texture's setter and sends the change to the host.

#include "dialog/QtWrapperBase.h"
#include "textures/GraniteTexture3D.h"
#include "ui_GraniteWidget.h"

namespace gritwell {

class GraniteQtWrapper : public QtWrapperBase {
    Q_OBJECT

public:
    explicit GraniteQtWrapper(GraniteTexture3D* texture, ImageArea* imageArea, Ui_GraniteWidget* ui, QWidget* page,
                              QObject* parent);
    ~GraniteQtWrapper() override = default;

    // Every control from the texture's fields, then the interactive-update
    // button and the tracking of this page's controls.
    void updateUI() override;
    // Spin-box keyboard tracking and slider tracking of the Granite controls.
    void setInteractivity(bool on);

public slots:
    void interactiveUpdateToggled(bool on);
    void octavesChanged(int value);
    void frequencyChanged(int value);  // 1..800 for 0.01..8

private:
    Ui_GraniteWidget* ui_;
    GraniteTexture3D* texture_;
};

}  // namespace gritwell
