#pragma once

// Small helpers the dialog's files share: the registry, and how the dialog
// reads and sets its widgets.

#include "../config/configkeys.h"

#include <ipserdes/serdes.h>

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QWidget>

#include <initializer_list>

namespace IPCPRI {
namespace DialogWidgets {

inline IPSERDESIP::serdes *registry()
{
    return IPSERDESIP::serdes::instance();
}

// A box counts only when it is both enabled and checked.
inline bool enabledAndChecked(const QAbstractButton *button)
{
    return button->isEnabled() && button->isChecked();
}

inline void setAllEnabled(std::initializer_list<QWidget *> widgets, bool enabled)
{
    for (QWidget *widget : widgets)
        widget->setEnabled(enabled);
}

// Makes the item with exactly this text current; no item matches: none is current.
inline void selectText(QComboBox *combo, const QString &text)
{
    combo->setCurrentIndex(combo->findText(text));
}

// The same, but a text that matches no item leaves the current item.
inline void selectTextIfPresent(QComboBox *combo, const QString &text)
{
    const int index = combo->findText(text);
    if (index >= 0)
        combo->setCurrentIndex(index);
}

// Sets the text only when the field shows another one, so that an entry
// that passes its rule keeps its cursor and undo history. A masked field
// shows its blanks, which text() leaves out.
inline void setTextIfChanged(QLineEdit *edit, const QString &text)
{
    if (edit->displayText() != text)
        edit->setText(text);
}

// The value a new core starts with under a key, as text.
inline QString initial(const QString &key)
{
    return Config::initialValue(key).toString();
}

} // namespace DialogWidgets
} // namespace IPCPRI
