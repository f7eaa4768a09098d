#include "QorFileDialog.h"

#include "QorTools.h"
#include <Orvane/GraphLoader.h>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QGridLayout>
#include <list>

namespace Orvane::Qt4 {

QorFileDialog::QorFileDialog(QWidget* parent)
    : QFileDialog(parent, QString(), QString(), QString())
{
    // The system's own dialog has no place for the boxes.
    setOption(DontUseNativeDialog);
    auto* options = new QGridLayout;
    _skipRootCheck = addOption(options, "skipRootCheck", tr("Skip root"));
    _useTabCheck = addOption(options, "useTabCheck", tr("Use tabs"));
    _resolveProtoCheck = addOption(options, "resolveProtoCheck", tr("Resolve protos"));
    _writeProcInfoCheck = addOption(options, "writeProcInfoCheck", tr("Write proc info"));
    _writeAbstractCheck = addOption(options, "writeAbstractCheck", tr("Write abstract nodes"));
    _writeDefaultValueCheck = addOption(options, "writeDefaultValueCheck", tr("Write default values"));
    if (auto* grid = qobject_cast<QGridLayout*>(layout()))
        grid->addLayout(options, grid->rowCount(), 0, 1, -1);
    else
        delete options;
}

QorFileDialog::~QorFileDialog() = default;

QCheckBox* QorFileDialog::addOption(QGridLayout* options, const char* name, const QString& label)
{
    constexpr int columns = 3;
    auto* box = new QCheckBox(label, this);
    box->setObjectName(QLatin1String(name));
    const int place = options->count();
    options->addWidget(box, place / columns, place % columns);
    return box;
}

QStringList QorFileDialog::buildFileFilters()
{
    std::list<std::string> suffixes;
    GraphLoader::getSuffixList(suffixes);
    QString patterns;
    for (const std::string& suffix : suffixes)
        patterns += QStringLiteral(" *.") + fromRuntime(suffix);

    QStringList filters;
    filters << tr("All files (*.*)") << tr("All valid files (%1)").arg(patterns);
    std::list<std::string> formats;
    GraphLoader::getFormatList(formats, GraphLoader::FILTER_FS);
    for (const std::string& format : formats)
        filters << fromRuntime(format);
    return filters;
}

bool QorFileDialog::isSkippingRoot() const
{
    return _skipRootCheck->isChecked();
}

void QorFileDialog::setSkipRoot(bool on)
{
    _skipRootCheck->setChecked(on);
}

bool QorFileDialog::isUsingTab() const
{
    return _useTabCheck->isChecked();
}

void QorFileDialog::setUseTab(bool on)
{
    _useTabCheck->setChecked(on);
}

bool QorFileDialog::isResolvingProto() const
{
    return _resolveProtoCheck->isChecked();
}

void QorFileDialog::setResolveProto(bool on)
{
    _resolveProtoCheck->setChecked(on);
}

bool QorFileDialog::isWritingProcInfo() const
{
    return _writeProcInfoCheck->isChecked();
}

void QorFileDialog::setWriteProcInfo(bool on)
{
    _writeProcInfoCheck->setChecked(on);
}

bool QorFileDialog::isWritingAbstract() const
{
    return _writeAbstractCheck->isChecked();
}

void QorFileDialog::setWriteAbstract(bool on)
{
    _writeAbstractCheck->setChecked(on);
}

bool QorFileDialog::isWritingDefaultValue() const
{
    return _writeDefaultValueCheck->isChecked();
}

void QorFileDialog::setWriteDefaultValue(bool on)
{
    _writeDefaultValueCheck->setChecked(on);
}

} // namespace Orvane::Qt4
