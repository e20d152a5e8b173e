#include "design/PaperFields.h"
#include "design/frmPageSetup.h"

#include "document/clsRptControl.h"

#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>
#include <cmath>

namespace {

// Margins and spacing are stored as 16-bit twips: 32767 / 1440 inches at most.
constexpr double MaxInches = 22.75;
constexpr int MaxColumns = 100;

QDoubleSpinBox* inchField(const char* name, QWidget* parent)
{
    auto* f = new QDoubleSpinBox(parent);
    f->setObjectName(QLatin1String(name));
    f->setDecimals(3);
    f->setRange(0, MaxInches);
    f->setSingleStep(0.125);
    f->setAlignment(Qt::AlignRight);
    return f;
}

QCheckBox* checkBox(const char* name, const QString& caption, QWidget* parent)
{
    auto* c = new QCheckBox(caption, parent);
    c->setObjectName(QLatin1String(name));
    return c;
}

QGroupBox* frame(const char* name, const QString& caption, QWidget* parent)
{
    auto* g = new QGroupBox(caption, parent);
    g->setObjectName(QLatin1String(name));
    return g;
}

} // namespace

bool frmPageSetup::Start(clsRptControl& document, QWidget* parent)
{
    frmPageSetup dialog(document, parent);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    dialog.Apply();
    return true;
}

frmPageSetup::frmPageSetup(clsRptControl& document, QWidget* parent) : QDialog(parent), m_doc(document)
{
    setObjectName(QStringLiteral("frmPageSetup"));
    setWindowTitle(QStringLiteral("Page Setup"));

    auto* margins = frame("fraMargins", QStringLiteral("Margins (in Inches)"), this);
    auto* marginForm = new QFormLayout(margins);
    const char* marginNames[4] = {"fpTopMargin", "fpBottomMargin", "fpLeftMargin", "fpRightMargin"};
    const QString marginLabels[4] = {QStringLiteral("Top"), QStringLiteral("Bottom"), QStringLiteral("Left"),
                                     QStringLiteral("Right")};
    int* targets[4] = {&m_doc.TopMargin, &m_doc.BottomMargin, &m_doc.LeftMargin, &m_doc.RightMargin};
    for (int i = 0; i < 4; ++i) {
        m_margins[i].edit = inchField(marginNames[i], margins);
        m_margins[i].target = targets[i];
        marginForm->addRow(marginLabels[i], m_margins[i].edit);
    }

    auto* columns = frame("fraColumns", QStringLiteral("Columns"), this);
    auto* columnForm = new QFormLayout(columns);
    m_columns = new QSpinBox(columns);
    m_columns->setObjectName(QStringLiteral("fpNumColumns"));
    m_columns->setRange(1, MaxColumns);
    m_columns->setValue(1);
    m_columns->setAlignment(Qt::AlignRight);
    columnForm->addRow(QStringLiteral("Number of:"), m_columns);
    m_leftToRight = checkBox("chkLeftToRight", QStringLiteral("Fill Left to Right"), columns);
    columnForm->addRow(m_leftToRight);

    auto* show = frame("fraShow", QStringLiteral("Show"), this);
    auto* showBox = new QVBoxLayout(show);
    m_pageBorder = checkBox("chkPageBorder", QStringLiteral("Page Border"), show);
    m_pageNumber = checkBox("chkPageNumber", QStringLiteral("Page Numbers"), show);
    showBox->addWidget(m_pageBorder);
    showBox->addWidget(m_pageNumber);

    auto* sections = frame("fraSections", QStringLiteral("Sections"), this);
    auto* sectionForm = new QFormLayout(sections);
    m_spacing = inchField("fpSectionSpacing", sections);
    m_spacing->setToolTip(
        QStringLiteral("Space in inches between sections when printing more than one section per page"));
    m_spacing->installEventFilter(this);
    sectionForm->addRow(QStringLiteral("Section Spacing (in inches)"), m_spacing);

    m_newPage = checkBox("chkNewPage", QStringLiteral("Force a new page between records"), this);
    m_paper = new PaperFields(this);

    auto* ok = new QPushButton(QStringLiteral("OK"), this);
    ok->setObjectName(QStringLiteral("OKButton"));
    ok->setDefault(true);
    auto* cancel = new QPushButton(QStringLiteral("Cancel"), this);
    cancel->setObjectName(QStringLiteral("CancelButton"));
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(cancel);

    auto* top = new QVBoxLayout(this);
    auto* middle = new QHBoxLayout;
    middle->addWidget(columns);
    middle->addWidget(show);
    top->addWidget(margins);
    top->addLayout(middle);
    top->addWidget(sections);
    top->addWidget(m_paper);
    top->addWidget(m_newPage);
    top->addLayout(buttons);
    setLayout(top);

    QWidget* order[] = {m_margins[0].edit, m_margins[1].edit, m_margins[2].edit, m_margins[3].edit, m_columns,
                        m_leftToRight,     m_pageBorder,      m_pageNumber,      m_spacing,         m_paper->SizeBox(),
                        m_newPage,         ok,                cancel};
    for (size_t i = 1; i < std::size(order); ++i)
        setTabOrder(order[i - 1], order[i]);

    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    // The new-page choice takes effect at once, so Cancel keeps it.
    connect(m_newPage, &QCheckBox::clicked, this, [this](bool on) {
        if (m_doc.NewPage != on) {
            m_doc.NewPage = on;
            m_doc.DirtyFlag = true;
        }
    });
    connect(m_spacing, &QAbstractSpinBox::editingFinished, this, &frmPageSetup::acceptSpacing);

    fill();
}

void frmPageSetup::fill()
{
    const double defaults[4] = {DefaultTopBottom, DefaultTopBottom, DefaultLeftRight, DefaultLeftRight};
    for (int i = 0; i < 4; ++i) {
        MarginField& m = m_margins[i];
        const int current = *m.target;
        m.twips = current > 0 ? current : int(std::lround(defaults[i] * TwipsPerInch));
        m.edit->setValue(double(m.twips) / TwipsPerInch);
        m.shown = m.edit->value();
    }
    const int flags = m_doc.HeaderFlags;
    m_leftToRight->setChecked(flags & FlagLeftToRight);
    m_pageNumber->setChecked(flags & FlagPageNumber);
    m_pageBorder->setChecked(flags & FlagPageBorder);
    m_columns->setValue(m_doc.NumberOfColumns);
    m_acceptedSpacing = m_doc.SectionSpacing();
    m_spacing->setValue(double(m_acceptedSpacing));
    m_spacingShown = m_spacing->value();
    m_newPage->setChecked(m_doc.NewPage);
    m_paper->Fill(m_doc.Paper);
}

void frmPageSetup::acceptSpacing()
{
    if (m_spacing->cleanText().isEmpty())
        return;
    const double v = m_spacing->value();
    if (v == m_spacingShown)
        return; // untouched: keep the document's full precision
    m_acceptedSpacing = float(v);
    m_spacingShown = v;
}

void frmPageSetup::restoreSpacing() { m_spacing->setValue(m_spacingShown); }

bool frmPageSetup::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_spacing && event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        // The first Escape takes back a typed spacing; with nothing typed it cancels the dialog.
        const bool edited = m_spacing->text() != m_spacing->textFromValue(m_spacingShown) ||
                            m_spacing->value() != m_spacingShown;
        if (edited) {
            restoreSpacing();
            m_spacing->selectAll();
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void frmPageSetup::Apply()
{
    bool changed = false;

    int flags = m_doc.HeaderFlags | FlagLeftToRight | FlagPageNumber | FlagPageBorder;
    if (!m_leftToRight->isChecked())
        flags ^= FlagLeftToRight;
    if (!m_pageNumber->isChecked())
        flags ^= FlagPageNumber;
    if (!m_pageBorder->isChecked())
        flags ^= FlagPageBorder;
    changed |= flags != m_doc.HeaderFlags;
    m_doc.HeaderFlags = flags;

    changed |= m_columns->value() != m_doc.NumberOfColumns;
    m_doc.NumberOfColumns = m_columns->value();

    for (const MarginField& m : m_margins) {
        const double v = m.edit->value();
        const int twips = v == m.shown ? m.twips : int(std::lround(v * TwipsPerInch));
        changed |= twips != *m.target;
        *m.target = twips;
    }

    changed |= m_paper->Value() != m_doc.Paper;
    m_doc.Paper = m_paper->Value();

    acceptSpacing();
    if (m_acceptedSpacing != m_doc.SectionSpacing()) {
        m_doc.SetSectionSpacing(m_acceptedSpacing);
        changed = true;
    }
    if (changed)
        m_doc.DirtyFlag = true;
}
