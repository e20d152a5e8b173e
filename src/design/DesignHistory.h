#pragma once
// Undo and redo in the design window. The history itself lives on the document (UndoStack);
// this part decides when one user action has ended: after every command of the command table,
// and after every mouse button or key the user lets go of in the window or its tool windows
// (a drag, a key move, a property applied in the sheet, a section bar dropped). Whatever
// changed in between is one step. Nothing is recorded while a modal dialog is up, so a
// command that asks first is still one step.
#include "document/UndoStack.h"

#include <QObject>
#include <QPointer>

class frmPagewright;

class DesignHistory : public QObject, public UndoSurface {
    Q_OBJECT
public:
    explicit DesignHistory(frmPagewright& window);
    ~DesignHistory() override;

    UndoStack& Stack() { return m_stack; }
    // The document as it stands becomes the start of the history.
    void Reset();
    // Takes in what changed since the last step.
    void Flush(const QString& name = QString());
    void Undo();
    void Redo();

    // One command of the command table: changes made while it runs become one step with its
    // name. Nested commands join the outer one.
    class Command {
    public:
        Command(DesignHistory& h, const QString& toolName);
        ~Command();
        Command(const Command&) = delete;
        Command& operator=(const Command&) = delete;

    private:
        DesignHistory& m_h;
        QString m_tool;
        QString m_fileBefore;
    };
    // The step name of a command ("Bold", "Paste", "Fore Color", ...).
    QString StepName(const QString& toolName) const;

    // --- UndoSurface
    SurfaceState CaptureSurface() const override;
    void RestoreSurface(const SurfaceState& state) override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool ours(QObject* watched) const;
    void schedule();
    void updateTools();

    frmPagewright& m_win;
    UndoStack m_stack;
    int m_commandDepth = 0;
    bool m_scheduled = false;
};
