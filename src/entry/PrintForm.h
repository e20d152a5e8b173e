#pragma once
// The print library's print form, as the flyer manager drives it: one report file, a number of
// copies, a template-only switch, a preview switch, the printer set-up and a list of record keys.
// The output layer registers the real one; the entry layer only knows this interface so that the
// dialogs do not depend on the report engine.
#include <QObject>
#include <QStringList>
#include <functional>
#include <memory>

class QWidget;

class PrintForm : public QObject {
    Q_OBJECT
public:
    ~PrintForm() override = default;

    // The preview pane bound to this form (created on first call, owned by parent).
    virtual QWidget* PreviewPane(QWidget* parent) = 0;
    // Shows the first page of reportFile, as a template, in the preview pane. False (and the pane
    // says why) when the file cannot be read; an empty name clears the pane.
    virtual bool LoadPreview(const QString& reportFile) = 0;

    // The report that PrintList prints (a file on this file system).
    virtual void SetReportFile(const QString& reportFile) = 0;
    virtual QString ReportFile() const = 0;

    virtual int GetCopies() const = 0;
    // Values below 1 count as 1. Raises Copies when the number changes.
    virtual void SetCopies(int copies) = 0;

    // On: the layout prints with no record (fields and bound pictures blank).
    virtual void SetTemplateOnly(bool on) = 0;
    virtual bool TemplateOnly() const = 0;
    // On: PrintList shows the preview (printing is reachable from it) instead of printing.
    virtual void SetPreview(bool on) = 0;
    virtual bool Preview() const = 0;

    // The printer set-up dialog; may change the number of copies (and raise Copies).
    virtual void PrinterSetup(QWidget* parent) = 0;

    // Prints (or previews) one copy set of every key. A key is a record type digit followed by
    // the record's key ("0" = listing); an empty key prints the template. firstCopy and collate
    // are the library's further arguments. True when pages were produced.
    virtual bool PrintList(const QStringList& keys, int firstCopy = 1, bool collate = false) = 0;

signals:
    void Copies(int copies);
};

using PrintFormFactory = std::function<std::unique_ptr<PrintForm>()>;
void SetPrintFormFactory(PrintFormFactory factory); // empty function uninstalls
// A new print form from the registered factory; null when none is registered.
std::unique_ptr<PrintForm> NewPrintForm();
