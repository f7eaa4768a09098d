#pragma once

#include "QorExport.h"
#include <QtCore/QStringList>
#include <QtWidgets/QFileDialog>

class QCheckBox;
class QGridLayout;

namespace Orvane::Qt4 {

/// A file dialog that knows the runtime's file formats and has a check box for each export option below the
/// file names. It only holds the options: whoever opened it reads them. Owned by its parent.
class QOR_EXPORT QorFileDialog : public QFileDialog
{
    Q_OBJECT

public:
    /// All options are off.
    explicit QorFileDialog(QWidget* parent = nullptr);
    ~QorFileDialog() override;

    /// The name filters: all files, all files of known formats, and one for each format of the runtime.
    static QStringList buildFileFilters();

    /// Options of the writers: leave out the root,
    bool isSkippingRoot() const;
    void setSkipRoot(bool on);
    /// indent by tabs,
    bool isUsingTab() const;
    void setUseTab(bool on);
    /// write instances of prototypes as plain nodes,
    bool isResolvingProto() const;
    void setResolveProto(bool on);
    /// write what nodes computed,
    bool isWritingProcInfo() const;
    void setWriteProcInfo(bool on);
    /// name abstract types,
    bool isWritingAbstract() const;
    void setWriteAbstract(bool on);
    /// write fields that hold their default, too.
    bool isWritingDefaultValue() const;
    void setWriteDefaultValue(bool on);

private:
    QCheckBox* addOption(QGridLayout* options, const char* name, const QString& label);

    QCheckBox* _skipRootCheck = nullptr;
    QCheckBox* _useTabCheck = nullptr;
    QCheckBox* _resolveProtoCheck = nullptr;
    QCheckBox* _writeProcInfoCheck = nullptr;
    QCheckBox* _writeAbstractCheck = nullptr;
    QCheckBox* _writeDefaultValueCheck = nullptr;
};

} // namespace Orvane::Qt4
