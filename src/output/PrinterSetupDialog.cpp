#include "output/PrinterSetupDialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QPrinter>
#include <QPrinterInfo>
#include <QPushButton>
#include <QSpinBox>

PrinterSetupDialog::PrinterSetupDialog(QPrinter& printer, const QString& caption, QWidget* parent)
    : QDialog(parent), m_printer(printer)
{
    setWindowTitle(caption);
    cboPrinter = new QComboBox(this);
    cboPrinter->setObjectName(QStringLiteral("cboPrinter"));
    const QString defaultName = QPrinterInfo::defaultPrinterName();
    for (const QString& name : QPrinterInfo::availablePrinterNames())
        cboPrinter->addItem(name == defaultName ? name + QStringLiteral(" (default)") : name, name);
    cboPrinter->addItem(FileChoice(), QString());
    lblStatus = new QLabel(this);
    lblStatus->setObjectName(QStringLiteral("lblStatus"));
    lblStatus->setWordWrap(true);

    spnCopies = new QSpinBox(this);
    spnCopies->setObjectName(QStringLiteral("spnCopies"));
    spnCopies->setRange(1, 9999);
    chkCollate = new QCheckBox(QStringLiteral("&Collate"), this);
    chkCollate->setObjectName(QStringLiteral("chkCollate"));
    cboDuplex = new QComboBox(this);
    cboDuplex->setObjectName(QStringLiteral("cboDuplex"));
    cboDuplex->addItem(QStringLiteral("One-sided"), int(QPrinter::DuplexNone));
    cboDuplex->addItem(QStringLiteral("Two-sided, long edge"), int(QPrinter::DuplexLongSide));
    cboDuplex->addItem(QStringLiteral("Two-sided, short edge"), int(QPrinter::DuplexShortSide));
    cboColor = new QComboBox(this);
    cboColor->setObjectName(QStringLiteral("cboColor"));
    cboColor->addItem(QStringLiteral("Colour"), int(QPrinter::Color));
    cboColor->addItem(QStringLiteral("Grayscale"), int(QPrinter::GrayScale));

    buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* form = new QFormLayout(this);
    form->addRow(QStringLiteral("&Printer:"), cboPrinter);
    form->addRow(QString(), lblStatus);
    form->addRow(QStringLiteral("C&opies:"), spnCopies);
    form->addRow(QString(), chkCollate);
    form->addRow(QStringLiteral("&Sides:"), cboDuplex);
    form->addRow(QStringLiteral("Co&lour:"), cboColor);
    form->addRow(buttons);

    // The printer's present settings.
    const bool toFile = printer.outputFormat() == QPrinter::PdfFormat || cboPrinter->count() == 1;
    const int at = toFile ? cboPrinter->count() - 1 : cboPrinter->findData(printer.printerName());
    cboPrinter->setCurrentIndex(at >= 0 ? at : 0);
    spnCopies->setValue(std::max(1, printer.copyCount()));
    chkCollate->setChecked(printer.collateCopies());
    cboDuplex->setCurrentIndex(std::max(0, cboDuplex->findData(int(printer.duplex()))));
    cboColor->setCurrentIndex(std::max(0, cboColor->findData(int(printer.colorMode()))));
    connect(cboPrinter, &QComboBox::currentIndexChanged, this, &PrinterSetupDialog::showPrinter);
    showPrinter();
    cboPrinter->setFocus();
}

void PrinterSetupDialog::showPrinter()
{
    const QString name = cboPrinter->currentData().toString();
    if (name.isEmpty()) {
        lblStatus->setText(QStringLiteral("Each print asks for the PDF file to write."));
        return;
    }
    const QPrinterInfo info = QPrinterInfo::printerInfo(name);
    QString text = info.description().isEmpty() ? name : info.description();
    if (!info.location().isEmpty())
        text += QStringLiteral(" - ") + info.location();
    lblStatus->setText(text);
}

void PrinterSetupDialog::accept()
{
    const QString name = cboPrinter->currentData().toString();
    if (name.isEmpty()) {
        m_printer.setOutputFormat(QPrinter::PdfFormat);
        m_printer.setOutputFileName(QString()); // asked for at each print
    } else {
        m_printer.setOutputFormat(QPrinter::NativeFormat);
        m_printer.setPrinterName(name);
    }
    m_printer.setCopyCount(spnCopies->value());
    m_printer.setCollateCopies(chkCollate->isChecked());
    m_printer.setDuplex(QPrinter::DuplexMode(cboDuplex->currentData().toInt()));
    m_printer.setColorMode(QPrinter::ColorMode(cboColor->currentData().toInt()));
    QDialog::accept();
}
