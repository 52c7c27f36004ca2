#pragma once
// PlaidQtWrapper: the "Plaid" page. Each control stores its value through the
// texture's setter and sends the change to the host. The other backgrounds
// and the four layer colours have no control; they keep what the record holds.

#include "dialog/QtWrapperBase.h"
#include "textures/PlaidTexture3D.h"
#include "ui_PlaidWidget.h"

namespace gritwell {

class PlaidQtWrapper : public QtWrapperBase {
    Q_OBJECT

public:
    explicit PlaidQtWrapper(PlaidTexture3D* texture, ImageArea* imageArea, Ui_PlaidWidget* ui, QWidget* page,
                            QObject* parent);
    ~PlaidQtWrapper() override = default;

    // Every control from the texture's fields, then the interactive-update
    // button and the tracking of this page's controls.
    void updateUI() override;
    // Slider tracking and spin-box keyboard tracking of the Plaid controls.
    void setInteractivity(bool on);

public slots:
    void interactiveUpdateToggled(bool on);
    void primaryBackgroundChanged(int value);
    void horizontalFrequencyChanged(double value);
    void verticalFrequencyChanged(double value);
    void horizontalPeriodChanged(int value);
    void verticalPeriodChanged(int value);

private:
    Ui_PlaidWidget* ui_;
    PlaidTexture3D* texture_;
};

}  // namespace gritwell
