#pragma once

#include <QMessageBox>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <functional>

QT_BEGIN_NAMESPACE
class QDialog;
QT_END_NAMESPACE

namespace CpriHost {

// Drives modal windows from inside their own event loop: it looks at the
// active modal widget whenever the event loop comes round, answers message
// boxes with a chosen button and hands any other dialog to a callback.
class ModalDriver : public QObject
{
    Q_OBJECT
public:
    struct SeenBox
    {
        QString title;
        QString text;
    };

    explicit ModalDriver(QObject *parent = nullptr);

    // The button pressed on message boxes; a box without it gets its
    // escape button (No, Cancel, Ok ...).
    void setAnswer(QMessageBox::StandardButton answer) { m_answer = answer; }
    // Called once for each new modal dialog that is no message box.
    void setDialogHandler(std::function<void(QDialog *)> handler)
    {
        m_handler = std::move(handler);
    }

    void start();
    void stop();
    QList<SeenBox> seenBoxes() const { return m_seen; }

private:
    void poll();
    void answer(QMessageBox *box);

    QTimer m_timer;
    QMessageBox::StandardButton m_answer = QMessageBox::Yes;
    std::function<void(QDialog *)> m_handler;
    QPointer<QDialog> m_handled;
    QList<SeenBox> m_seen;
};

} // namespace CpriHost
