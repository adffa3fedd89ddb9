#pragma once

#include "../hostglobal.h"
#include "../dev/devicearg.h"
#include "../utils/pinfigure.h"

#include <QDialog>
#include <QList>
#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVariant>

QT_BEGIN_NAMESPACE
class QComboBox;
class QLabel;
class QLineEdit;
class QScrollArea;
class QSplitter;
class QTabWidget;
QT_END_NAMESPACE

namespace IPSERDESIP {

class PinFigureView;

// The common frame of every SERDES core dialog: the core's label as its
// title, output file name, module name, HDL language, synthesis tool, the
// core's tabs, a drawing of the core's ports beside them, and OK, Cancel
// and Help. A core derives from it, adds its tabs and overrides initDialog
// and loadConfiguration. The dialog opens at the size its contents ask for,
// as far as its screen has room; what does not fit scrolls above the
// buttons, which stay in sight.
class IPHOST_EXPORT protocolGenDlg : public QDialog
{
    Q_OBJECT
public:
    explicit protocolGenDlg(QWidget *parent = nullptr);
    ~protocolGenDlg() override;

    // Prepares the core's widgets for the device; runs once the device is known.
    virtual void initDialog();
    // Writes a stored configuration into the core's widgets; false refuses it.
    virtual bool loadConfiguration(const QMap<QString, QVariant> &config);
    // Takes the device from a stored configuration ("target_device"),
    // falling back to the project's device.
    virtual void setDevice(const QMap<QString, QVariant> &config);

    // A new core: remembers the device and runs initDialog.
    void setCreating(const QString &name, const DEV::DeviceArg &device);
    // A stored core: takes its device, file and module names, runs
    // initDialog and returns what loadConfiguration says.
    bool setOpening(const QMap<QString, QVariant> &config);

    void uiSetLabelText(const QString &text);
    void uiSetDefaultFileName(const QString &name);
    void uiSetModuleName(const QString &name);
    void uiAddTab(QWidget *page, const QString &title);
    void uiSetSynthesisTool(const QString &tool);
    void uiSetLanguageIndex(int index);
    QString uiSynthesisTool() const;
    int uiLanguageIndex() const;
    QString fileName() const;
    QString moduleName() const;
    QString instanceName() const;
    // Where the core's files go: the project's working directory + "/" + file name.
    QString createPath() const;
    void uiSetFigurePins(const QList<Utils::PinFigure> &pins);
    QList<Utils::PinFigure> figurePins() const;
    // Keeps the shown creation path in step with the file name field.
    void fileNameConnectCreatIn();
    DEV::DeviceArg device() const;

    // Appends one message per problem of the file name field.
    void checkFileOptions(QStringList &errors);
    // The module name must be a Verilog identifier that is not a keyword.
    bool checkModuleName();
    // Asks before a core's existing output folder is reused.
    bool checkFileExisting();
    void showErrorMsg(const QStringList &errors);

    // The core's help document: helpDocument, taken relative to the core's
    // package folder unless it is absolute.
    QString helpPath() const;

    static QStringList languages();
    static QStringList synthesisTools();

protected:
    void showEvent(QShowEvent *event) override;

    // The core's help document, kept for the host's help viewer.
    QString helpDocument;
    bool fileCheckSkipped = false;

private:
    void updateCreatePath();
    void fitFigure();
    QSize screenRoom() const;
    // Opens the help document in the desktop's viewer; an error box names a missing one.
    void showHelp();

    DEV::DeviceArg m_device;
    QSet<QString> m_existingFolders;
    QString m_instanceName;
    QLineEdit *m_fileName = nullptr;
    QLineEdit *m_moduleName = nullptr;
    QComboBox *m_language = nullptr;
    QComboBox *m_synthesisTool = nullptr;
    QLabel *m_createPath = nullptr;
    QTabWidget *m_tabs = nullptr;
    PinFigureView *m_figure = nullptr;
    QScrollArea *m_frameArea = nullptr;
    QScrollArea *m_figureArea = nullptr;
    QSplitter *m_splitter = nullptr;
};

} // namespace IPSERDESIP
