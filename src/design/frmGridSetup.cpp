#include "design/frmGridSetup.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

namespace {

QSpinBox* twipsField(const char* name, int value, QWidget* parent)
{
    auto* f = new QSpinBox(parent);
    f->setObjectName(QLatin1String(name));
    f->setRange(frmGridSetup::MinSpacing, frmGridSetup::MaxSpacing);
    f->setAlignment(Qt::AlignRight);
    f->setValue(value);
    return f;
}

} // namespace

bool frmGridSetup::Start(GridTarget& target, QWidget* parent)
{
    frmGridSetup dialog(target, parent);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    dialog.Apply();
    return true;
}

frmGridSetup::frmGridSetup(GridTarget& target, QWidget* parent) : QDialog(parent), m_target(target)
{
    setObjectName(QStringLiteral("frmGridSetup"));
    setWindowTitle(QStringLiteral("Grid Setup"));

    auto* units = new QLabel(QStringLiteral("Grid Units: Twips"), this);
    units->setObjectName(QStringLiteral("lblUnits"));
    // A spacing outside 1..1000 (from a hand-edited settings file) shows clamped to the range.
    m_width = twipsField("fpGridWidth", target.GridIncX(), this);
    m_height = twipsField("fpGridHeight", target.GridIncY(), this);
    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Width:"), m_width);
    form->addRow(QStringLiteral("Height:"), m_height);

    auto* ok = new QPushButton(QStringLiteral("OK"), this);
    ok->setObjectName(QStringLiteral("cmdOK"));
    ok->setDefault(true);
    auto* cancel = new QPushButton(QStringLiteral("Cancel"), this);
    cancel->setObjectName(QStringLiteral("cmdCancel"));
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(cancel);

    auto* top = new QVBoxLayout(this);
    top->addWidget(units);
    top->addLayout(form);
    top->addLayout(buttons);

    setTabOrder(m_width, m_height);
    setTabOrder(m_height, ok);
    setTabOrder(ok, cancel);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
}

void frmGridSetup::Apply() { m_target.SetGridSpacing(m_width->value(), m_height->value()); }
