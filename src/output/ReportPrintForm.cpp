#include "output/ReportPrintForm.h"

#include "entry/Prompts.h"
#include "output/PrintJob.h"
#include "output/PrinterSetupDialog.h"

#include <QApplication>
#include <QFileInfo>
#include <QPainter>
#include <QPrintPreviewDialog>

namespace {

constexpr int kPaneMargin = 8;

} // namespace

// ---- preview pane ----------------------------------------------------------------------------

ReportPreviewPane::ReportPreviewPane(QWidget* parent) : QWidget(parent)
{
    setMinimumSize(160, 200);
    ReportOptions o;
    o.templateOnly = true;
    m_engine.SetOptions(o);
}

ReportPreviewPane::~ReportPreviewPane() = default;

bool ReportPreviewPane::Load(const QString& reportFile)
{
    Clear();
    try {
        m_engine.Load(reportFile);
        m_engine.Run({QString()});
        m_loaded = m_engine.PageCount() > 0;
    } catch (const HostError& e) {
        m_message = e.Description();
    }
    update();
    return m_loaded;
}

void ReportPreviewPane::Clear()
{
    m_loaded = false;
    m_message.clear();
    update();
}

QRectF ReportPreviewPane::PageRect() const
{
    if (!m_loaded)
        return {};
    const QSizeF page = m_engine.PagePoints();
    const QRectF room = QRectF(rect()).adjusted(kPaneMargin, kPaneMargin, -kPaneMargin, -kPaneMargin);
    if (page.isEmpty() || room.width() <= 0 || room.height() <= 0)
        return {};
    const double scale = std::min(room.width() / page.width(), room.height() / page.height());
    QRectF r(0, 0, page.width() * scale, page.height() * scale);
    r.moveCenter(room.center());
    return r;
}

void ReportPreviewPane::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    p.fillRect(rect(), palette().color(QPalette::Dark));
    const QRectF page = PageRect();
    if (page.isEmpty()) {
        p.setPen(palette().color(QPalette::BrightText));
        p.drawText(rect().adjusted(kPaneMargin, kPaneMargin, -kPaneMargin, -kPaneMargin),
                   Qt::AlignCenter | Qt::TextWordWrap, m_message);
        return;
    }
    p.fillRect(page.translated(3, 3), QColor(0, 0, 0, 90));
    p.fillRect(page, Qt::white);
    p.setRenderHint(QPainter::Antialiasing);
    p.setRenderHint(QPainter::SmoothPixmapTransform);
    p.setClipRect(page);
    p.translate(page.topLeft());
    // PaintPage works in pixels at dpi: the pane's dpi is its page width per paper inch.
    const double dpi = page.width() / (m_engine.PagePoints().width() / 72.0);
    m_engine.PaintPage(p, 0, dpi);
}

// ---- print form ------------------------------------------------------------------------------

ReportPrintForm::ReportPrintForm()
{
    m_printer.setFullPage(true);
    m_printer.setCopyCount(m_copies);
}

ReportPrintForm::~ReportPrintForm()
{
    delete m_pane.data(); // a pane whose parent outlives the form must not paint a dead engine
}

QWidget* ReportPrintForm::PreviewPane(QWidget* parent)
{
    if (!m_pane) {
        m_pane = new ReportPreviewPane(parent);
        m_pane->setObjectName(QStringLiteral("Vp"));
    }
    return m_pane;
}

bool ReportPrintForm::LoadPreview(const QString& reportFile)
{
    if (!m_pane)
        return false;
    if (reportFile.isEmpty()) {
        m_pane->Clear();
        return false;
    }
    return m_pane->Load(reportFile);
}

void ReportPrintForm::SetCopies(int copies)
{
    copies = std::max(1, copies);
    m_printer.setCopyCount(copies);
    if (copies == m_copies)
        return;
    m_copies = copies;
    emit Copies(copies);
}

void ReportPrintForm::PrinterSetup(QWidget* parent)
{
    m_printer.setCopyCount(m_copies);
    PrinterSetupDialog dlg(m_printer, QStringLiteral("Printer Setup"), parent ? parent : QApplication::activeWindow());
    if (dlg.exec() == QDialog::Accepted)
        SetCopies(m_printer.copyCount());
}

std::pair<int, QString> ReportPrintForm::SplitKey(const QString& element)
{
    if (element.startsWith(QLatin1Char('0')) && element.size() > 1)
        return {1, element.mid(1)};
    return {1, element};
}

bool ReportPrintForm::PrintList(const QStringList& keys, int firstCopy, bool collate)
{
    Q_UNUSED(firstCopy);
    Q_UNUSED(collate); // one copy set per key list: nothing to collate
    QWidget* parent = QApplication::activeWindow();
    QStringList recordKeys;
    int kind = 1;
    bool blank = m_templateOnly;
    for (const QString& k : keys) {
        if (k.isEmpty())
            continue;
        const auto [keyKind, key] = SplitKey(k);
        kind = keyKind;
        recordKeys << key;
    }
    // A list of empty elements can only mean the template.
    if (recordKeys.isEmpty())
        blank = true;
    if (blank)
        recordKeys = QStringList(QString());

    ReportEngine engine;
    ReportOptions options;
    options.databaseKind = kind;
    options.templateOnly = blank;
    engine.SetOptions(options);
    try {
        engine.Load(m_file);
    } catch (const HostError& e) {
        MsgBox(e.Text(), Mb::OKOnly | Mb::Critical, QStringLiteral("Report Designer File error"));
        return false;
    }
    try {
        engine.Run(recordKeys);
    } catch (const HostError& e) {
        MsgBox(e.Text(), Mb::OKOnly | Mb::Critical, QStringLiteral("Print"));
        return false;
    }
    if (!engine.MissingKeys().isEmpty()) {
        MsgBox(engine.MissingKeys().join(QLatin1String(", ")) + QStringLiteral(" Not Found"), Mb::OKOnly | Mb::Exclamation,
               QStringLiteral("Print"));
        return false;
    }

    const QString title = QFileInfo(m_file).completeBaseName();
    const QString key = blank ? QString() : recordKeys.join(QLatin1Char(' '));
    m_printer.setDocName(title);
    m_printer.setCopyCount(m_copies);
    m_printer.setPrintRange(QPrinter::AllPages);
    if (m_preview) {
        std::unique_ptr<QPrintPreviewDialog> dlg = NewReportPreview(engine, m_printer, parent, title, key);
        dlg->exec();
        SetCopies(m_printer.copyCount()); // printing from the preview may have changed them
        return true;
    }
    PrintJob::Target target;
    target.title = title;
    target.key = key;
    target.pageCount = engine.PageCount();
    if (!PrintJob::ChooseTarget(m_printer, parent, target))
        return false;
    SetCopies(m_printer.copyCount());
    return PrintJob::Print(engine, m_printer);
}

void InstallPrintForm()
{
    SetPrintFormFactory([] { return std::make_unique<ReportPrintForm>(); });
}
