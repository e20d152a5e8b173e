#pragma once
// The printer set-up: which printer (or a PDF file, asked for at each print), copies, collation,
// two-sided printing and colour, confirmed with OK. It sets up a QPrinter and prints nothing.
#include <QDialog>

class QCheckBox;
class QComboBox;
class QDialogButtonBox;
class QLabel;
class QPrinter;
class QSpinBox;

class PrinterSetupDialog : public QDialog {
    Q_OBJECT
public:
    PrinterSetupDialog(QPrinter& printer, const QString& caption, QWidget* parent = nullptr);

    // The entry of cboPrinter that prints to a PDF file.
    static QString FileChoice() { return QStringLiteral("Print to File (PDF)"); }

    QComboBox* cboPrinter = nullptr;
    QLabel* lblStatus = nullptr;
    QSpinBox* spnCopies = nullptr;
    QCheckBox* chkCollate = nullptr;
    QComboBox* cboDuplex = nullptr;
    QComboBox* cboColor = nullptr;
    QDialogButtonBox* buttons = nullptr;

    void accept() override; // writes the choices to the printer

private:
    void showPrinter();

    QPrinter& m_printer;
};
