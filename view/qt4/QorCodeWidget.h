#pragma once

#include "QorBorrowedNode.h"
#include "QorExport.h"
#include "QorMetaTypes.h"
#include <QtCore/QPointer>
#include <QtCore/QUrl>
#include <QtWidgets/QWidget>

class QLabel;
class QPushButton;
class QTextEdit;

namespace Orvane {
class MFString;
}

namespace Orvane::Qt4 {

class QorNodeEditor;
class QorNodeItemDelegate;
class QorSyntaxHighlighter;

/// Edits the fields and the code of a script or shader node. The code node's `url` or `shaderUrl` field holds
/// the code or names a file of it; the field node's fields are listed. A host sets both, mostly to the same
/// node, and the language, and answers the two signals: the widget itself adds and removes no field.
///
/// Nodes are borrowed. One that has died counts as none, and what was shown of it stays.
class QOR_EXPORT QorCodeWidget : public QWidget
{
    Q_OBJECT

public:
    /// What the code is highlighted as.
    enum LanguageE : int {
        LANGUAGE_NONE = 0,
        LANGUAGE_ECMA = 1,
        LANGUAGE_PLAIN = 2,
        LANGUAGE_GLSL = 3,
        LANGUAGE_CG = 4,
        LANGUAGE_OTHER = 5,
        LANGUAGE_X3D = 6
    };

    /// Shows no node, and is disabled until one is set.
    explicit QorCodeWidget(QWidget* parent = nullptr);
    ~QorCodeWidget() override;

    /// The node whose code is shown; null when there is none or it has died.
    Orvane::Node* codeNode() const { return _codeNode.get(); }
    /// The node whose fields are listed, as `codeNode`.
    Orvane::Node* fieldNode() const { return _fieldNode.get(); }

    /// What the code is highlighted as.
    LanguageE language() const;
    /// Highlights the code anew, as soon as events are processed.
    void setLanguage(LanguageE language);

    /// The field that holds the code of a node or names its file. Null, with a log line, for a null node, and
    /// null when the node has no such field of strings.
    static Orvane::MFString* urlField(Orvane::Node* node);
    bool isEmptyScript(Orvane::MFString* field) const;
    /// True for the scheme "file".
    bool isLocalFile(QString url) const;
    /// True when the first value of the field names something on the disk; any other is code.
    bool isUsingExternalScript(Orvane::MFString* field) const;

    /// Shows \a code, on demand without the blanks at the beginning of its lines.
    void setCode(QString code, bool removeIndent);
    /// True when the text was changed since it was shown or applied.
    bool isModified() const;
    /// Lists the fields of the field node anew.
    void updateFieldList();

public slots:
    /// Shows the code of a node; null empties and disables the widget. The node that is shown already is left
    /// as it is.
    void setCodeNode(Orvane::Node* s);
    /// Lists the fields of a node; null is ignored.
    void setFieldNode(Orvane::Node* n);
    /// Asks the user for a new field of the field node.
    void openFieldDialog();

signals:
    /// The user wants a new field in a node.
    void wantsAddField(Orvane::Node* n, QString dataType, QString fieldType, QString name,
                       QString defaultValue, QString valueType, QString description);
    /// The user wants a field removed. The list is brought up to date when the signal returns.
    void wantsDeleteField(Orvane::Node* n, QString fieldName);

protected slots:
    /// Writes the code to the file or into the field, and has the runtime read it.
    void onApply();
    /// Asks for the removal of the field whose name is the current cell.
    void onRemoveField();
    void updateButtons();

private:
    QWidget* makeFieldPane();
    QWidget* makeCodePane();
    QString scriptPath(const QString& value, const Orvane::MFString& field) const;
    void showCode(Orvane::MFString& field);
    void readScript(const QString& path);
    bool writeScript(const QString& code) const;

    QLabel* _codeNodeLabel;
    QLabel* _fieldsLabel;
    QorNodeEditor* _fieldEditor;
    QLabel* _codeLabel;
    QPushButton* _addFieldButton;
    QPushButton* _removeFieldButton;
    QTextEdit* _codeEdit;
    QorSyntaxHighlighter* _highlighter;
    QPushButton* _applyButton;
    QorBorrowedNode _codeNode;
    QorBorrowedNode _fieldNode;
    bool _isExternal = false; ///< stays true once a local file was shown
    QUrl _scriptUrl;
    QString _scriptFile;
    QPointer<QorNodeItemDelegate> _defaultDelegate; ///< the one that the field editor made for itself
};

} // namespace Orvane::Qt4
