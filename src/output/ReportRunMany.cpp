#include "output/ReportRunMany.h"

#include "output/ReportEngine.h"
#include "output/ReportOutput.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QPrintDialog>
#include <QPrinter>
#include <QProgressDialog>

namespace {

RecordChooser& chooser()
{
    static RecordChooser c;
    return c;
}

// Pages onto a printer (or the printer's PDF file), one device page each.
class PrinterOutput : public PageOutput {
public:
    explicit PrinterOutput(QPrinter& printer) : m_printer(printer) {}
    ~PrinterOutput() override
    {
        if (m_painter.isActive())
            m_painter.end();
    }
    void Begin(const QPageLayout& layout) override
    {
        m_printer.setPageLayout(layout);
        m_printer.setPageMargins(QMarginsF(0, 0, 0, 0), QPageLayout::Point);
    }
    QPainter* BeginPage(int page, int, const QString&) override
    {
        if (page == 0) {
            if (!m_painter.begin(&m_printer))
                throw HostError(HostErr::FileAccess, QStringLiteral("Cannot print on this printer"));
            // The device's origin is the printable area; pages are laid out from the paper's corner.
            const QRectF paint = m_printer.pageLayout().paintRectPoints();
            m_painter.translate(-paint.left() * Dpi() / 72.0, -paint.top() * Dpi() / 72.0);
        } else {
            m_printer.newPage();
        }
        return &m_painter;
    }
    void EndPage() override {}
    void Finish() override
    {
        if (m_painter.isActive() && !m_painter.end())
            throw HostError(HostErr::FileAccess, QStringLiteral("The printer did not take the last page"));
    }
    double Dpi() const override { return m_printer.logicalDpiX(); }

private:
    QPrinter& m_printer;
    QPainter m_painter;
};

} // namespace

void SetRecordChooser(RecordChooser c) { chooser() = std::move(c); }

bool PrintReportMany(QWidget* parent, const ReportRunRequest& request, QPrinter* given)
{
    const QString caption = QStringLiteral("Print Many");
    if (!chooser())
        return false;
    const std::optional<QStringList> keys = chooser()(parent, request.databaseKind);
    if (!keys || keys->isEmpty())
        return false;

    QPrinter own(QPrinter::HighResolution);
    QPrinter& printer = given ? *given : own;
    printer.setFullPage(true);
    printer.setDocName(request.title.isEmpty() ? QFileInfo(request.file).completeBaseName() : request.title);
    if (!given || printer.outputFileName().isEmpty()) {
        QPrintDialog dlg(&printer, parent);
        if (dlg.exec() != QDialog::Accepted)
            return false;
    }

    QProgressDialog progress(QStringLiteral("Printing..."), QStringLiteral("Cancel"), 0, int(keys->size()), parent);
    progress.setWindowTitle(caption);
    progress.setMinimumDuration(500);
    progress.setAutoClose(false);
    progress.setAutoReset(false);
    QElapsedTimer timer;
    timer.start();
    ReportEngine engine;
    ReportOptions options;
    options.databaseKind = request.databaseKind;
    options.newPagePerRecord = request.newPagePerRecord;
    options.progress = [&](int done, int total) {
        const double secs = std::max(0.001, timer.elapsed() / 1000.0);
        const double left = done > 0 ? (total - done) * secs / done : 0;
        progress.setMaximum(std::max(1, total));
        progress.setValue(done);
        progress.setLabelText(QStringLiteral("Printing record %1 of %2 (%3 a second, %4:%5 left)")
                                  .arg(done)
                                  .arg(total)
                                  .arg(done / secs, 0, 'f', 0)
                                  .arg(int(left) / 60)
                                  .arg(int(left) % 60, 2, 10, QLatin1Char('0')));
        QApplication::processEvents();
        return !progress.wasCanceled();
    };
    engine.SetOptions(options);
    try {
        engine.Load(request.file);
    } catch (const HostError& e) {
        MsgBox(e.Text(), Mb::OKOnly | Mb::Critical, QStringLiteral("Report Designer File error"));
        return false;
    }
    bool done = false;
    try {
        PrinterOutput out(printer);
        done = engine.Print(*keys, out);
    } catch (const HostError& e) {
        progress.close();
        MsgBox(e.Text(), Mb::OKOnly | Mb::Critical, caption);
        return false;
    }
    progress.close();
    if (!done)
        return false;
    QStringList notes;
    if (!engine.MissingKeys().isEmpty())
        notes << engine.MissingKeys().join(QLatin1String(", ")) + QStringLiteral(" Not Found");
    notes << engine.Warnings();
    if (!notes.isEmpty())
        MsgBox(notes.join(QLatin1Char('\n')), Mb::OKOnly | Mb::Exclamation, caption);
    return engine.PageCount() > 0;
}
