#pragma once
// The page setup dialog: margins, columns and their fill order, page border and numbers,
// section spacing, paper size and orientation, and a new page per record, for one report
// document.
#include <QDialog>

class PaperFields;
class QCheckBox;
class QDoubleSpinBox;
class QSpinBox;
class clsRptControl;

class frmPageSetup : public QDialog {
    Q_OBJECT
public:
    static constexpr int TwipsPerInch = 1440;
    // HeaderFlags bits this dialog edits; the others are kept as they are.
    static constexpr int FlagLeftToRight = 16, FlagPageNumber = 32, FlagPageBorder = 64;

    // Fills the fields from the document, runs the dialog modally and writes the fields back
    // on OK. Returns whether OK was pressed.
    static bool Start(clsRptControl& document, QWidget* parent);

    // Builds the dialog filled from the document; "Force a new page between records" writes
    // to the document as soon as it is clicked.
    explicit frmPageSetup(clsRptControl& document, QWidget* parent = nullptr);

    // Writes the fields to the document; marks it dirty when a setting changed.
    void Apply();

    // Margin fields start with these when the document's margin is 0 or less.
    static constexpr double DefaultTopBottom = 0.75, DefaultLeftRight = 0.5;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct MarginField {
        QDoubleSpinBox* edit = nullptr;
        int* target = nullptr; // the document's margin, twips
        int twips = 0;         // what the field stands for while it shows `shown`
        double shown = 0;
    };
    void fill();
    void acceptSpacing();
    void restoreSpacing();

    clsRptControl& m_doc;
    MarginField m_margins[4];
    QSpinBox* m_columns = nullptr;
    QCheckBox* m_leftToRight = nullptr;
    QCheckBox* m_pageBorder = nullptr;
    QCheckBox* m_pageNumber = nullptr;
    QDoubleSpinBox* m_spacing = nullptr;
    QCheckBox* m_newPage = nullptr;
    PaperFields* m_paper = nullptr;
    // The last accepted section spacing, inches, and the value its field showed for it: the
    // field rounds to three decimals, and an untouched field must not round the document.
    float m_acceptedSpacing = 0;
    double m_spacingShown = 0;
};
