#include "cpridlgfields.h"

#include "dialogwidgets.h"

#include <QCheckBox>
#include <QLabel>
#include <QSpinBox>

namespace IPCPRI {

using namespace DialogWidgets;

void cpridlg::FieldBinding::write(const QVariant &value) const
{
    switch (kind) {
    case Kind::EnabledBox:
    case Kind::CheckedBox:
        static_cast<QAbstractButton *>(widget)->setChecked(value.toBool());
        break;
    case Kind::Text:
    case Kind::MaskedText:
        static_cast<QLineEdit *>(widget)->setText(value.toString());
        break;
    case Kind::Choice:
        selectText(static_cast<QComboBox *>(widget), value.toString());
        break;
    case Kind::ChoiceIfOffered:
        selectTextIfPresent(static_cast<QComboBox *>(widget), value.toString());
        break;
    case Kind::Value:
        static_cast<QSpinBox *>(widget)->setValue(value.toInt());
        break;
    case Kind::Label:
        static_cast<QLabel *>(widget)->setText(value.toString());
        break;
    case Kind::BiasDecision:
        break;
    }
}

bool cpridlg::FieldBinding::collected() const
{
    if (kind == Kind::BiasDecision)
        return false;
    return !shownBy || (!shownBy->isHidden() && shownBy->isEnabled());
}

QVariant cpridlg::FieldBinding::read() const
{
    switch (kind) {
    case Kind::EnabledBox:
        return enabledAndChecked(static_cast<QAbstractButton *>(widget));
    case Kind::CheckedBox:
        return static_cast<QAbstractButton *>(widget)->isChecked();
    case Kind::Text:
        return static_cast<QLineEdit *>(widget)->text();
    case Kind::MaskedText:
        return static_cast<QLineEdit *>(widget)->displayText();
    case Kind::Choice:
    case Kind::ChoiceIfOffered:
        return static_cast<QComboBox *>(widget)->currentText();
    case Kind::Value:
        return static_cast<QSpinBox *>(widget)->value();
    case Kind::Label:
        return static_cast<QLabel *>(widget)->text();
    case Kind::BiasDecision:
        break;
    }
    return QVariant();
}

} // namespace IPCPRI
