#pragma once
// CorrugatedQtWrapper: the "Corrugated" page, one list of wave shapes whose
// order differs from the style numbers records store.

#include "dialog/QtWrapperBase.h"
#include "textures/CorrugatedTexture3D.h"
#include "ui_CorrugatedWidget.h"

namespace gritwell {

class CorrugatedQtWrapper : public QtWrapperBase {
    Q_OBJECT

public:
    explicit CorrugatedQtWrapper(CorrugatedTexture3D* texture, ImageArea* imageArea, Ui_CorrugatedWidget* ui,
                                 QWidget* page, QObject* parent);
    ~CorrugatedQtWrapper() override = default;

    // The list item of the stored style (none for a style the list does not
    // offer), then the interactive-update button.
    void updateUI() override;
    // The page has no slider or spin box whose tracking could change.
    void setInteractivity(bool on);

public slots:
    void interactiveUpdateToggled(bool on);
    void styleChanged(int index);  // ignores an index outside the list

private:
    Ui_CorrugatedWidget* ui_;
    CorrugatedTexture3D* texture_;
};

}  // namespace gritwell
