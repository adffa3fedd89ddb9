#pragma once

// The dialog's widgets that each hold one key of the record: how loading
// sets them and how collecting reads them.

#include "cpridlg.h"

#include <QGroupBox>
#include <QVariant>

namespace IPCPRI {

struct cpridlg::FieldBinding
{
    enum class Kind {
        EnabledBox,      // a box that records true only while enabled and checked
        CheckedBox,      // a box whose check alone counts
        Text,            // a line edit's text
        MaskedText,      // a masked line edit: what it shows, blanks included
        Choice,          // a list item by its text; no match leaves no item current
        ChoiceIfOffered, // the same, but no match keeps the current item
        Value,           // a spin box's value
        Label,           // a label's text
        BiasDecision,    // the quad bias decision: read by accept, not by collecting
    };

    QString key;
    QWidget *widget;
    Kind kind;
    const QGroupBox *shownBy = nullptr; // collected only while this group is shown and enabled

    void write(const QVariant &value) const;
    // Whether collecting writes the key, and what it writes.
    bool collected() const;
    QVariant read() const;
};

} // namespace IPCPRI
