#pragma once
// The flyer manager: lists the flyer files of the templates, office and user folders, previews
// the selected one, opens it in the design window (as a template or filled with a listing),
// starts new flyers, prints them for a listing or as a blank template, and deletes them.
#include "entry/clsReportDesign.h"

#include <QWidget>
#include <memory>

class PrintForm;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QToolButton;

// An up/down arrow pair that counts a number (the classic UpDown control): the up arrow counts up.
class UpDown : public QWidget {
    Q_OBJECT
public:
    UpDown(int minimum, int maximum, QWidget* parent = nullptr);
    int value() const { return m_value; }
    void setValue(int value);
    QToolButton* upButton() const { return m_up; }
    QToolButton* downButton() const { return m_down; }

signals:
    void valueChanged(int value);

private:
    int m_min, m_max, m_value;
    QToolButton* m_up = nullptr;
    QToolButton* m_down = nullptr;
};

class frmFlyers : public QWidget, public FlyerWindow {
    Q_OBJECT
public:
    explicit frmFlyers(QWidget* parent = nullptr);
    ~frmFlyers() override;

    static constexpr int HelpContextId = 450;

    // FlyerWindow
    QWidget* Widget() override { return this; }
    void Init(int jobIndex) override;
    void Unload() override;

    // The statement that counts the listing ListNum among those the user may see.
    static QString ListingExistsSql(const QString& ListNum, const QString& statusList);
    bool ListingExists(const QString& ListNum);
    void FillFileList();
    void PrintFlyer(const QString& ListNum);
    void DeleteFlyer();
    // Null when no print library is installed.
    PrintForm* PrinterForm() const { return mPrinterForm.get(); }

    void List1_Click();
    void cmdChangeCurrent_Click();
    void cmdChangeNew_Click();
    void cmdCreateNew_Click();
    void cmdMergePrint_Click();
    void cmdPrintCurrent_Click();
    void cmdPrintSetup_Click();
    void cmdClose_Click();
    void cmdHelp_Click();

    int JobIndex = 0;
    QString FlyerRoot;
    QString FlyerExt;
    QString FlyerFolder;
    QString SelectedFlyer;

    QLabel* lblLookIn = nullptr;
    QComboBox* cboLookIn = nullptr;
    QListWidget* List1 = nullptr;
    QLabel* Label1 = nullptr;
    QWidget* Vp = nullptr;
    QPushButton* cmdCreateNew = nullptr;
    QPushButton* cmdChangeCurrent = nullptr;
    QPushButton* cmdChangeNew = nullptr;
    QPushButton* cmdMergePrint = nullptr;
    QPushButton* cmdPrintCurrent = nullptr;
    QPushButton* cmdPrintSetup = nullptr;
    QPushButton* cmdClose = nullptr;
    QPushButton* cmdHelp = nullptr;
    QLabel* lblCopies = nullptr;
    QLineEdit* txtCopies = nullptr;
    UpDown* updCopies = nullptr;
    QCheckBox* chkPrintPreview = nullptr;

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void openDesignWindow(const QString& file, const QString& title, const QString& propertyId);
    void commitCopies();
    QString selectedFile() const;
    void txtCopies_LostFocus();
    void showCopies(int copies);
    void notFound(const QString& ListNum);

    std::unique_ptr<PrintForm> mPrinterForm;
    bool m_jobClosed = false;
    bool m_unloading = false;
    bool m_unloaded = false;
};

// Makes frmFlyers the flyer manager the entry opens when the host's Switch is 2.
void RegisterFlyerWindow();
