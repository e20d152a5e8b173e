#pragma once
// A modeless tool window of the design window (field list, property sheet): closing it from its
// title bar only puts it away, it hides while the host is minimised and comes back as it was,
// and it goes for good when unloaded (by its owner or the host's UnloadForm).
#include <QWidget>

class HostToolWindow : public QWidget {
    Q_OBJECT
public:
    explicit HostToolWindow(QWidget* parent);

    // Closes the window for good and stops listening to the host.
    void Unload();
    // The host was minimised or restored.
    void MinimizedChanged(bool minimized);

protected:
    // Listens to the host's minimise/restore and unload events (once, however often called).
    void AttachHostEvents();
    bool Unloading() const { return m_unloading; }
    // What a window lets go of when it is unloaded, before it closes.
    virtual void OnUnload() {}
    void closeEvent(QCloseEvent* event) override;

private:
    bool m_unloading = false;
    bool m_minimized = false;
    bool m_visibleBeforeMinimize = false;
};
