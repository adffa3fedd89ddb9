#include "protocolgendlg.h"

#include "pinfigureview.h"
#include "serdes.h"
#include "../core/idecore.h"
#include "../dev/devicedb.h"

#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollArea>
#include <QScrollBar>
#include <QSet>
#include <QShowEvent>
#include <QSplitter>
#include <QStyle>
#include <QStyleOptionTabWidgetFrame>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace IPSERDESIP {

namespace {

const char kWindowIcon[] = ":/image/module.png";
const char kTargetDeviceKey[] = "target_device";
const char kFileKey[] = "file";
const char kModuleKey[] = "module";

// The symbol's port names are set a little smaller than the form's text.
constexpr qreal kFigureFontScale = 0.9;

// The reserved words of Verilog-2001 (IEEE 1364-2001); none may name a module.
const QSet<QString> &verilogKeywords()
{
    static const QSet<QString> keywords = {
        "always", "and", "assign", "automatic", "begin", "buf", "bufif0", "bufif1",
        "case", "casex", "casez", "cell", "cmos", "config", "deassign", "default",
        "defparam", "design", "disable", "edge", "else", "end", "endcase", "endconfig",
        "endfunction", "endgenerate", "endmodule", "endprimitive", "endspecify",
        "endtable", "endtask", "event", "for", "force", "forever", "fork", "function",
        "generate", "genvar", "highz0", "highz1", "if", "ifnone", "incdir", "include",
        "initial", "inout", "input", "instance", "integer", "join", "large", "liblist",
        "library", "localparam", "macromodule", "medium", "module", "nand", "negedge",
        "nmos", "nor", "noshowcancelled", "not", "notif0", "notif1", "or", "output",
        "parameter", "pmos", "posedge", "primitive", "pull0", "pull1", "pulldown",
        "pullup", "pulsestyle_onevent", "pulsestyle_ondetect", "rcmos", "real",
        "realtime", "reg", "release", "repeat", "rnmos", "rpmos", "rtran", "rtranif0",
        "rtranif1", "scalared", "showcancelled", "signed", "small", "specify",
        "specparam", "strong0", "strong1", "supply0", "supply1", "table", "task", "time",
        "tran", "tranif0", "tranif1", "tri", "tri0", "tri1", "triand", "trior", "trireg",
        "unsigned", "use", "vectored", "wait", "wand", "weak0", "weak1", "while", "wire",
        "wor", "xnor", "xor"};
    return keywords;
}

bool isAllowedFileNameChar(QChar c)
{
    const ushort u = c.unicode();
    return (u >= 'a' && u <= 'z') || (u >= 'A' && u <= 'Z') || (u >= '0' && u <= '9')
           || u == '_' || u == '-' || u == '.';
}

bool isPathSeparator(QChar c)
{
    return c == QLatin1Char('/') || c == QLatin1Char('\\');
}

// The characters of name that a file name may not hold, each once and
// quoted, path separators left out (they are reported on their own).
QStringList forbiddenFileNameChars(const QString &name)
{
    QStringList found;
    for (QChar c : name) {
        const QString quoted = QLatin1Char('"') + c + QLatin1Char('"');
        if (!isAllowedFileNameChar(c) && !isPathSeparator(c) && !found.contains(quoted))
            found.append(quoted);
    }
    return found;
}

bool isPathLike(const QString &name)
{
    return name == QLatin1String(".") || name == QLatin1String("..")
           || std::any_of(name.cbegin(), name.cend(), isPathSeparator);
}

// Why name cannot be a module name, or an empty text when it can.
QString moduleNameProblem(const QString &name)
{
    if (name.isEmpty())
        return protocolGenDlg::tr("The module name is empty.");
    static const QRegularExpression identifier(QStringLiteral("^[A-Za-z_][A-Za-z0-9_$]*$"));
    if (!identifier.match(name).hasMatch()) {
        return protocolGenDlg::tr("The module name \"%1\" is not a legal Verilog identifier: "
                                  "it must start with a letter or \"_\" and may only contain "
                                  "letters, digits, \"_\" and \"$\".").arg(name);
    }
    if (verilogKeywords().contains(name))
        return protocolGenDlg::tr("The module name \"%1\" is a reserved Verilog keyword.").arg(name);
    return QString();
}

QString messageBoxName(QMessageBox::Icon icon)
{
    switch (icon) {
    case QMessageBox::Critical:
        return QStringLiteral("errorMessageBox");
    case QMessageBox::Question:
        return QStringLiteral("questionMessageBox");
    default:
        return QStringLiteral("helpMessageBox");
    }
}

// Runs a modal message box over parent and returns the button chosen.
int runMessageBox(QWidget *parent, QMessageBox::Icon icon, const QString &title,
                  const QString &text, QMessageBox::StandardButtons buttons,
                  QMessageBox::StandardButton defaultButton = QMessageBox::NoButton)
{
    QMessageBox box(icon, title, text, buttons, parent);
    box.setObjectName(messageBoxName(icon));
    box.setWindowIcon(QIcon(QString::fromLatin1(kWindowIcon)));
    if (defaultButton != QMessageBox::NoButton)
        box.setDefaultButton(defaultButton);
    return box.exec();
}

QLineEdit *makeLineEdit(const QString &objectName, QWidget *parent)
{
    auto *edit = new QLineEdit(parent);
    edit->setObjectName(objectName);
    return edit;
}

QComboBox *makeComboBox(const QString &objectName, const QStringList &items, QWidget *parent)
{
    auto *combo = new QComboBox(parent);
    combo->setObjectName(objectName);
    combo->addItems(items);
    return combo;
}

QPushButton *makeButton(const QString &text, const QString &objectName, QWidget *parent)
{
    auto *button = new QPushButton(text, parent);
    button->setObjectName(objectName);
    button->setAutoDefault(false);
    return button;
}

QLabel *makeCoreLabel(QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setObjectName(QStringLiteral("coreLabel"));
    label->setWordWrap(true);
    QFont bold = label->font();
    bold.setBold(true);
    label->setFont(bold);
    return label;
}

QLabel *makeCreatePathLabel(QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setObjectName(QStringLiteral("createPathLabel"));
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    // A long path must not widen the dialog; the tool tip shows it whole.
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    return label;
}

// Help on the left, OK and Cancel on the right.
QHBoxLayout *makeButtonRow(QPushButton *help, QPushButton *ok, QPushButton *cancel)
{
    auto *row = new QHBoxLayout;
    row->addWidget(help);
    row->addStretch(1);
    row->addWidget(ok);
    row->addWidget(cancel);
    return row;
}

// Tabs that ask for the room their pages need to show all of their
// contents: a page's scroll area counts with its whole content rather than
// the capped size a scroll area asks for. Every tab title stays in view.
class TabArea : public QTabWidget
{
public:
    explicit TabArea(QWidget *parent)
        : QTabWidget(parent)
    {
        setObjectName(QStringLiteral("tabWidget"));
        setUsesScrollButtons(false);
    }

    QSize sizeHint() const override
    {
        QSize pages;
        for (int i = 0; i < count(); ++i)
            pages = pages.expandedTo(wholeSizeHint(widget(i)));
        const QSize bar = tabBar()->sizeHint();
        QStyleOptionTabWidgetFrame option;
        initStyleOption(&option);
        option.state = QStyle::State_None;
        const QSize contents(std::max(pages.width(), bar.width()), pages.height() + bar.height());
        return style()->sizeFromContents(QStyle::CT_TabWidget, &option, contents, this);
    }

private:
    static QSize wholeSizeHint(const QWidget *page)
    {
        QSize hint = page->sizeHint();
        for (const QScrollArea *area : page->findChildren<QScrollArea *>()) {
            if (!area->widget() || !area->widgetResizable())
                continue;
            const int frame = area->frameWidth() + area->frameWidth();
            const QSize whole = area->widget()->sizeHint() + QSize(frame, frame);
            hint += (whole - area->sizeHint()).expandedTo(QSize(0, 0));
        }
        return hint;
    }
};

// Scrolls the port symbol, and asks for the symbol's whole width beside a
// vertical scroll bar; its height follows the tabs.
class FigureArea : public QScrollArea
{
public:
    FigureArea(PinFigureView *figure, QWidget *parent)
        : QScrollArea(parent)
    {
        setObjectName(QStringLiteral("figureArea"));
        setAlignment(Qt::AlignHCenter | Qt::AlignTop);
        setBackgroundRole(QPalette::Base);
        setWidget(figure);
    }

    QSize sizeHint() const override
    {
        const int frame = frameWidth() + frameWidth();
        return QSize(widget()->sizeHint().width() + verticalScrollBar()->sizeHint().width() + frame,
                     minimumSizeHint().height());
    }
};

// Figure and tabs side by side; unlike QSplitter's own, its size hint
// leaves room for the handle between them.
class FigureSplitter : public QSplitter
{
public:
    explicit FigureSplitter(QWidget *parent)
        : QSplitter(Qt::Horizontal, parent)
    {
        setObjectName(QStringLiteral("figureSplitter"));
        setChildrenCollapsible(false);
    }

    QSize sizeHint() const override
    {
        return QSplitter::sizeHint() + QSize(handleWidth() * (count() - 1), 0);
    }
};

PinFigureView *makeFigureView()
{
    auto *view = new PinFigureView;
    QFont font = view->font();
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * kFigureFontScale);
    view->setFont(font);
    return view;
}

// Folders in the working directory when a dialog opens: output folders
// that this dialog did not make.
QSet<QString> existingFolders()
{
    const QStringList names =
        QDir(serdes::instance()->workingDir()).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    return QSet<QString>(names.cbegin(), names.cend());
}

} // namespace

protocolGenDlg::protocolGenDlg(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("protocolGenDlg"));
    setWindowTitle(tr("Customize IP"));
    setWindowIcon(QIcon(QString::fromLatin1(kWindowIcon)));

    m_label = makeCoreLabel(this);
    m_fileName = makeLineEdit(QStringLiteral("fileNameEdit"), this);
    m_moduleName = makeLineEdit(QStringLiteral("moduleNameEdit"), this);
    m_language = makeComboBox(QStringLiteral("languageCombo"), languages(), this);
    m_synthesisTool = makeComboBox(QStringLiteral("synthesisToolCombo"), synthesisTools(), this);
    m_createPath = makeCreatePathLabel(this);

    // The output fields in two columns, which leaves the height to the tabs.
    auto *outputFields = new QFormLayout;
    outputFields->addRow(tr("File Name"), m_fileName);
    outputFields->addRow(tr("Language"), m_language);
    outputFields->addRow(tr("Create In"), m_createPath);
    auto *moduleFields = new QFormLayout;
    moduleFields->addRow(tr("Module Name"), m_moduleName);
    moduleFields->addRow(tr("Synthesis Tool"), m_synthesisTool);
    auto *fields = new QHBoxLayout;
    fields->addLayout(outputFields);
    fields->addLayout(moduleFields);

    m_figure = makeFigureView();
    m_tabs = new TabArea(this);
    auto *splitter = new FigureSplitter(this);
    splitter->addWidget(new FigureArea(m_figure, splitter));
    splitter->addWidget(m_tabs);
    // A wider dialog widens the tabs; the figure keeps its width.
    splitter->setStretchFactor(splitter->indexOf(m_tabs), 1);

    QPushButton *help = makeButton(tr("Help"), QStringLiteral("helpButton"), this);
    QPushButton *ok = makeButton(tr("OK"), QStringLiteral("okButton"), this);
    QPushButton *cancel = makeButton(tr("Cancel"), QStringLiteral("cancelButton"), this);
    ok->setDefault(true);

    auto *mainLayout = new QVBoxLayout(this);
    mainLayout->addWidget(m_label);
    mainLayout->addLayout(fields);
    mainLayout->addWidget(splitter, 1);
    mainLayout->addLayout(makeButtonRow(help, ok, cancel));

    // accept and reject are virtual: a core's overrides run.
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(help, &QPushButton::clicked, this, &protocolGenDlg::showHelp);
    connect(m_moduleName, &QLineEdit::textChanged, m_figure, &PinFigureView::setTitle);

    updateCreatePath();
    m_existingFolders = existingFolders();
}

protocolGenDlg::~protocolGenDlg() = default;

void protocolGenDlg::initDialog()
{
}

bool protocolGenDlg::loadConfiguration(const QMap<QString, QVariant> &config)
{
    Q_UNUSED(config)
    return true;
}

void protocolGenDlg::setDevice(const QMap<QString, QVariant> &config)
{
    const QString id = config.value(QString::fromLatin1(kTargetDeviceKey)).toString();
    DEV::DeviceArg found;
    if (!id.isEmpty())
        found = Core::IdeCore::deviceDataBase()->findDevice(id);
    m_device = found.isNull() ? serdes::instance()->device() : found;
}

void protocolGenDlg::setCreating(const QString &name, const DEV::DeviceArg &device)
{
    m_instanceName = name;
    m_device = device;
    if (!name.isEmpty())
        m_fileName->setText(name);
    initDialog();
}

bool protocolGenDlg::setOpening(const QMap<QString, QVariant> &config)
{
    setDevice(config);
    const QVariant file = config.value(QString::fromLatin1(kFileKey));
    if (file.userType() == QMetaType::QString)
        m_fileName->setText(file.toString());
    const QVariant module = config.value(QString::fromLatin1(kModuleKey));
    if (module.userType() == QMetaType::QString)
        m_moduleName->setText(module.toString());
    // An opened core writes into the folder it already has.
    fileCheckSkipped = true;
    initDialog();
    return loadConfiguration(config);
}

void protocolGenDlg::uiSetLabelText(const QString &text)
{
    m_label->setText(text);
}

void protocolGenDlg::uiSetDefaultFileName(const QString &name)
{
    m_fileName->setText(name);
}

void protocolGenDlg::uiSetModuleName(const QString &name)
{
    m_moduleName->setText(name);
}

void protocolGenDlg::uiAddTab(QWidget *page, const QString &title)
{
    if (page)
        m_tabs->addTab(page, title);
}

// Selects the tool with exactly this name; an unknown name changes nothing.
void protocolGenDlg::uiSetSynthesisTool(const QString &tool)
{
    const int index = m_synthesisTool->findText(tool, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (index >= 0)
        m_synthesisTool->setCurrentIndex(index);
}

// Selects a language by its index in languages(); an index out of range changes nothing.
void protocolGenDlg::uiSetLanguageIndex(int index)
{
    if (index >= 0 && index < m_language->count())
        m_language->setCurrentIndex(index);
}

QString protocolGenDlg::uiSynthesisTool() const
{
    return m_synthesisTool->currentText();
}

int protocolGenDlg::uiLanguageIndex() const
{
    return m_language->currentIndex();
}

QString protocolGenDlg::fileName() const
{
    return m_fileName->text();
}

QString protocolGenDlg::moduleName() const
{
    return m_moduleName->text();
}

QString protocolGenDlg::instanceName() const
{
    return m_instanceName;
}

QString protocolGenDlg::createPath() const
{
    return serdes::instance()->workingDir() + QLatin1Char('/') + fileName();
}

void protocolGenDlg::uiSetFigurePins(const QList<Utils::PinFigure> &pins)
{
    m_figure->setPins(pins);
}

QList<Utils::PinFigure> protocolGenDlg::figurePins() const
{
    return m_figure->pins();
}

void protocolGenDlg::fileNameConnectCreatIn()
{
    connect(m_fileName, &QLineEdit::textChanged, this, &protocolGenDlg::updateCreatePath,
            Qt::UniqueConnection);
    updateCreatePath();
}

DEV::DeviceArg protocolGenDlg::device() const
{
    return m_device;
}

void protocolGenDlg::checkFileOptions(QStringList &errors)
{
    const QString name = fileName();
    if (name.isEmpty()) {
        errors.append(tr("The file name is empty."));
        return;
    }
    if (isPathLike(name)) {
        errors.append(tr("The file name \"%1\" must be a plain name, not a path "
                         "(no \"/\" or \"\\\", and not \".\" or \"..\").").arg(name));
    }
    const QStringList forbidden = forbiddenFileNameChars(name);
    if (!forbidden.isEmpty()) {
        errors.append(tr("The file name \"%1\" contains characters that are not allowed (%2); "
                         "use only letters A-Z and a-z, digits, \"_\", \"-\" and \".\".")
                          .arg(name, forbidden.join(QStringLiteral(", "))));
    }
}

bool protocolGenDlg::checkModuleName()
{
    const QString problem = moduleNameProblem(moduleName());
    if (problem.isEmpty())
        return true;
    runMessageBox(this, QMessageBox::Critical, tr("Error"), problem, QMessageBox::Ok);
    return false;
}

// Only a folder that was there before this dialog opened is asked about,
// not the one its own calculation made.
bool protocolGenDlg::checkFileExisting()
{
    const QString path = createPath();
    if (!m_existingFolders.contains(fileName()) || !QFileInfo(path).isDir())
        return true;
    const QString text = tr("The folder \"%1\" already exists. Its files may be overwritten.\n"
                            "Do you want to use it anyway?").arg(QDir::toNativeSeparators(path));
    return runMessageBox(this, QMessageBox::Question, tr("Question"), text,
                         QMessageBox::Yes | QMessageBox::No, QMessageBox::No)
           == QMessageBox::Yes;
}

// Opens at the size the contents ask for, unless the host sized the dialog.
void protocolGenDlg::showEvent(QShowEvent *event)
{
    if (!event->spontaneous() && !testAttribute(Qt::WA_Resized))
        resize(sizeHint());
    QDialog::showEvent(event);
}

void protocolGenDlg::showErrorMsg(const QStringList &errors)
{
    runMessageBox(this, QMessageBox::Critical, tr("Error"), errors.join(QLatin1Char('\n')),
                  QMessageBox::Ok);
}

QStringList protocolGenDlg::languages()
{
    return {QStringLiteral("Verilog"), QStringLiteral("VHDL")};
}

QStringList protocolGenDlg::synthesisTools()
{
    return {QStringLiteral("Built-in"), QStringLiteral("Third-party")};
}

// Names the core's help document; a document that is a file on disk is
// shown by its full path.
void protocolGenDlg::showHelp()
{
    const QString document = helpDocument.trimmed();
    QString text;
    if (document.isEmpty())
        text = tr("No help document is available for this core.");
    else if (QFileInfo(document).isFile())
        text = tr("The help document of this core is:\n%1")
                   .arg(QDir::toNativeSeparators(QFileInfo(document).absoluteFilePath()));
    else
        text = tr("Help document of this core: %1").arg(document);
    runMessageBox(this, QMessageBox::Information, tr("Help"), text, QMessageBox::Ok);
}

void protocolGenDlg::updateCreatePath()
{
    const QString path = createPath();
    m_createPath->setText(path);
    m_createPath->setToolTip(QDir::toNativeSeparators(path));
}

} // namespace IPSERDESIP
