#pragma once
// Answers the printer dialogs a print opens, through the dialog's own widgets: what it offered
// (the file name), then the answer (file, copies, pages) and OK - or Cancel.
#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QPrintDialog>
#include <QRadioButton>
#include <QSpinBox>
#include <QTimer>
#include <deque>
#include <functional>

struct PrintDialogDriver {
    struct Answer {
        Answer(QString f = {}, int n = 0, QString p = {}, bool c = true, bool no = false)
            : file(std::move(f)), copies(n), pages(std::move(p)), collate(c), cancel(no) {}
        QString file;   // typed into the file name box when not empty
        int copies;     // 0: as offered
        QString pages;  // "2-3": pages 2 to 3; "current": the page in view
        bool collate;
        bool cancel;
        bool reverse = false;
    };
    std::deque<Answer> answers; // one per dialog; when empty: OK as offered
    QStringList offeredFiles;   // the file name box as each dialog opened
    QList<int> offeredCopies;
    QStringList titles;
    QTimer poll;

    PrintDialogDriver()
    {
        poll.setInterval(10);
        QObject::connect(&poll, &QTimer::timeout, [this] { answer(); });
        poll.start();
    }

    QStringList messages; // message boxes met on the way (answered with Escape)

    void answer()
    {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            messages << box->text();
            box->reject();
            return;
        }
        auto* d = qobject_cast<QPrintDialog*>(QApplication::activeModalWidget());
        if (!d || !d->isVisible())
            return;
        titles << d->windowTitle();
        auto* file = d->findChild<QLineEdit*>(QStringLiteral("filename"));
        auto* copies = d->findChild<QSpinBox*>(QStringLiteral("copies"));
        offeredFiles << (file ? file->text() : QString());
        offeredCopies << (copies ? copies->value() : -1);
        const Answer a = answers.empty() ? Answer() : answers.front();
        if (!answers.empty())
            answers.pop_front();
        if (a.cancel) {
            d->reject();
            return;
        }
        if (!a.file.isEmpty() && file)
            file->setText(a.file);
        if (a.copies > 0 && copies)
            copies->setValue(a.copies);
        if (auto* collate = d->findChild<QCheckBox*>(QStringLiteral("collate")))
            collate->setChecked(a.collate);
        if (auto* reverse = d->findChild<QCheckBox*>(QStringLiteral("reverse")))
            reverse->setChecked(a.reverse);
        if (a.pages == QLatin1String("current")) {
            if (auto* current = d->findChild<QRadioButton*>(QStringLiteral("printCurrentPage")))
                current->setChecked(true);
        } else if (!a.pages.isEmpty()) {
            // "from-to": the dialog's From and To boxes.
            const QStringList ends = a.pages.split(QLatin1Char('-'));
            auto* range = d->findChild<QRadioButton*>(QStringLiteral("printRange"));
            auto* from = d->findChild<QSpinBox*>(QStringLiteral("from"));
            auto* to = d->findChild<QSpinBox*>(QStringLiteral("to"));
            if (range && from && to && ends.size() == 2) {
                range->setChecked(true);
                to->setValue(ends[1].toInt());
                from->setValue(ends[0].toInt());
            }
        }
        if (qEnvironmentVariableIsSet("PW_DUMP_PRINT_DIALOG"))
            for (QWidget* w : d->findChildren<QWidget*>())
                if (!w->objectName().isEmpty())
                    qInfo("%s %s enabled=%d", w->metaObject()->className(), qPrintable(w->objectName()), w->isEnabled());
        d->accept();
    }
};
