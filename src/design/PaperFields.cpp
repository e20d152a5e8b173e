#include "design/PaperFields.h"

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QRadioButton>
#include <cmath>

namespace {

QDoubleSpinBox* inches(const char* name, QWidget* parent)
{
    auto* e = new QDoubleSpinBox(parent);
    e->setObjectName(QLatin1String(name));
    e->setDecimals(2);
    e->setRange(RdfPaper::MinTwips / 1440.0, RdfPaper::MaxTwips / 1440.0);
    e->setSingleStep(0.25);
    e->setSuffix(QStringLiteral(" in"));
    return e;
}

} // namespace

PaperFields::PaperFields(QWidget* parent) : QGroupBox(QStringLiteral("Paper"), parent)
{
    setObjectName(QStringLiteral("fraPaper"));
    m_size = new QComboBox(this);
    m_size->setObjectName(QStringLiteral("cboPaper"));
    m_size->addItems(RdfPaper::Names());
    m_size->addItem(QStringLiteral("Custom"));
    m_width = inches("fpPaperWidth", this);
    m_height = inches("fpPaperHeight", this);
    m_portrait = new QRadioButton(QStringLiteral("&Portrait"), this);
    m_portrait->setObjectName(QStringLiteral("optPortrait"));
    m_landscape = new QRadioButton(QStringLiteral("&Landscape"), this);
    m_landscape->setObjectName(QStringLiteral("optLandscape"));

    auto* form = new QFormLayout(this);
    form->addRow(QStringLiteral("Size:"), m_size);
    auto* custom = new QHBoxLayout;
    custom->addWidget(m_width);
    custom->addWidget(m_height);
    form->addRow(QStringLiteral("Width x height:"), custom);
    auto* orientation = new QHBoxLayout;
    orientation->addWidget(m_portrait);
    orientation->addWidget(m_landscape);
    form->addRow(QStringLiteral("Orientation:"), orientation);
    connect(m_size, &QComboBox::currentIndexChanged, this, &PaperFields::sizeChanged);
    Fill(std::nullopt);
}

void PaperFields::sizeChanged()
{
    const bool custom = m_size->currentIndex() == RdfPaper::Custom - 1;
    m_width->setEnabled(custom);
    m_height->setEnabled(custom);
    if (!custom) {
        // The fields show the chosen size, a start for a custom one.
        const QSizeF pts = RdfPaper{m_size->currentIndex() + 1}.PageSize().size(QPageSize::Point);
        m_width->setValue(pts.width() / 72.0);
        m_height->setValue(pts.height() / 72.0);
    }
}

void PaperFields::Fill(const std::optional<RdfPaper>& paper)
{
    m_hadSetting = paper.has_value();
    const RdfPaper p = paper.value_or(RdfPaper{});
    m_size->setCurrentIndex(p.kind - 1);
    sizeChanged();
    if (p.kind == RdfPaper::Custom) {
        m_width->setValue(p.widthTwips / 1440.0);
        m_height->setValue(p.heightTwips / 1440.0);
    }
    (p.landscape ? m_landscape : m_portrait)->setChecked(true);
}

std::optional<RdfPaper> PaperFields::Value() const
{
    RdfPaper p;
    p.kind = m_size->currentIndex() + 1;
    p.landscape = m_landscape->isChecked();
    if (p.kind == RdfPaper::Custom) {
        p.widthTwips = int(std::lround(m_width->value() * 1440));
        p.heightTwips = int(std::lround(m_height->value() * 1440));
    }
    if (!m_hadSetting && p == RdfPaper{})
        return std::nullopt;
    return p;
}
