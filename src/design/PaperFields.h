#pragma once
// The paper fields of the page setup dialog: size (Letter, Legal, Tabloid, A4, A5 or a custom
// width and height in inches) and orientation.
#include "document/RdfPaper.h"

#include <QGroupBox>
#include <optional>

class QComboBox;
class QDoubleSpinBox;
class QRadioButton;

class PaperFields : public QGroupBox {
    Q_OBJECT
public:
    explicit PaperFields(QWidget* parent = nullptr);
    // Shows paper (nothing: Letter portrait, the default a report without a setting prints on).
    void Fill(const std::optional<RdfPaper>& paper);
    // What the fields say; nothing while they still show the default of a report without a
    // setting, so that its file stays as it was.
    std::optional<RdfPaper> Value() const;

    QComboBox* SizeBox() const { return m_size; }

private:
    void sizeChanged();

    QComboBox* m_size = nullptr;
    QDoubleSpinBox* m_width = nullptr;
    QDoubleSpinBox* m_height = nullptr;
    QRadioButton* m_portrait = nullptr;
    QRadioButton* m_landscape = nullptr;
    bool m_hadSetting = false;
};
