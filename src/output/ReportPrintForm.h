#pragma once
// The print form over the report engine: a report file printed for a list of record keys on a
// QPrinter (copies, printer set-up, preview), and the preview pane that shows a report's first
// page as a template.
#include "entry/PrintForm.h"
#include "output/ReportEngine.h"

#include <QPointer>
#include <QPrinter>
#include <QWidget>

// Shows the first page of a report laid out without data, scaled to fit, on a grey ground.
class ReportPreviewPane : public QWidget {
    Q_OBJECT
public:
    explicit ReportPreviewPane(QWidget* parent = nullptr);
    ~ReportPreviewPane() override;

    // False when the file cannot be read; the pane then shows the reason.
    bool Load(const QString& reportFile);
    void Clear();
    bool HasPage() const { return m_loaded; }
    QString Message() const { return m_message; }
    // The page rectangle inside the pane, in pixels (empty when no page is shown).
    QRectF PageRect() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    ReportEngine m_engine;
    bool m_loaded = false;
    QString m_message;
};

class ReportPrintForm : public PrintForm {
    Q_OBJECT
public:
    ReportPrintForm();
    ~ReportPrintForm() override;

    QWidget* PreviewPane(QWidget* parent) override;
    bool LoadPreview(const QString& reportFile) override;
    void SetReportFile(const QString& reportFile) override { m_file = reportFile; }
    QString ReportFile() const override { return m_file; }
    int GetCopies() const override { return m_copies; }
    void SetCopies(int copies) override;
    void SetTemplateOnly(bool on) override { m_templateOnly = on; }
    bool TemplateOnly() const override { return m_templateOnly; }
    void SetPreview(bool on) override { m_preview = on; }
    bool Preview() const override { return m_preview; }
    void PrinterSetup(QWidget* parent) override;
    bool PrintList(const QStringList& keys, int firstCopy = 1, bool collate = false) override;

    // The printer every print goes to; set an output file name on it to print to a PDF file.
    QPrinter& Printer() { return m_printer; }
    // The database kind and key a list element names: "0" & ListNum is a listing.
    static std::pair<int, QString> SplitKey(const QString& element);

private:
    QPrinter m_printer{QPrinter::HighResolution};
    QPointer<ReportPreviewPane> m_pane;
    QString m_file;
    int m_copies = 1;
    bool m_templateOnly = false;
    bool m_preview = false;
};

// Makes ReportPrintForm the print form of the flyer manager (entry/PrintForm.h).
void InstallPrintForm();
