#include "AddNodeDialog.h"

#include <Orvane/Authoring.h>
#include <Orvane/Node.h>
#include <Orvane/NodeType.h>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QVBoxLayout>
#include <QorTools.h>

using Orvane::Qt4::fromRuntime;

namespace {

enum Role : int { DescriptionRole = Qt::UserRole + 1, FitsRole };

/// Types whose names begin with the text come first, so that the likely one is chosen at once.
class TypeFilter : public QSortFilterProxyModel
{
public:
    using QSortFilterProxyModel::QSortFilterProxyModel;

    void narrow(const QString& text, bool fittingOnly)
    {
        _text = text.trimmed();
        _words = _text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        _fittingOnly = fittingOnly;
        invalidate();
        sort(0);
    }

protected:
    bool filterAcceptsRow(int row, const QModelIndex& parent) const override
    {
        const QModelIndex index = sourceModel()->index(row, 0, parent);
        if (_fittingOnly && !index.data(FitsRole).toBool())
            return false;
        const QString text =
            index.data().toString() + QLatin1Char(' ') + index.data(DescriptionRole).toString();
        return std::all_of(_words.begin(), _words.end(),
                           [&text](const QString& word) { return text.contains(word, Qt::CaseInsensitive); });
    }

    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override
    {
        const QString a = left.data().toString();
        const QString b = right.data().toString();
        const int ranks = rank(a) - rank(b);
        return ranks != 0 ? ranks < 0 : a < b;
    }

private:
    int rank(const QString& name) const
    {
        if (name.startsWith(_text, Qt::CaseInsensitive))
            return 0;
        return name.contains(_text, Qt::CaseInsensitive) ? 1 : 2;
    }

    QString _text;
    QStringList _words;
    bool _fittingOnly = false;
};

} // namespace

AddNodeDialog::AddNodeDialog(const Orvane::Node& scene, Orvane::Node& parentNode, QWidget* parent)
    : QDialog(parent)
    , _search(new QLineEdit(this))
    , _fittingOnly(new QCheckBox(
          tr("&Only those with a place below %1").arg(fromRuntime(Orvane::Qt4::nodeName(&parentNode))), this))
    , _list(new QListView(this))
    , _description(new QLabel(this))
    , _name(new QLineEdit(this))
    , _types(new QStandardItemModel(this))
    , _shown(new TypeFilter(this))
{
    setWindowTitle(tr("Add node"));
    _search->setObjectName(QStringLiteral("search"));
    _search->setPlaceholderText(tr("Type, or words of what it does"));
    _search->setClearButtonEnabled(true);
    _search->installEventFilter(this);
    _fittingOnly->setObjectName(QStringLiteral("fittingOnly"));
    _list->setObjectName(QStringLiteral("types"));
    _list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    _list->setUniformItemSizes(true);
    _name->setObjectName(QStringLiteral("name"));
    _name->setPlaceholderText(tr("none"));
    _description->setWordWrap(true);
    _description->setTextFormat(Qt::PlainText);
    _description->setMinimumHeight(2 * fontMetrics().lineSpacing());
    _description->setAlignment(Qt::AlignTop | Qt::AlignLeft);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    _ok = buttons->button(QDialogButtonBox::Ok);
    buttons->button(QDialogButtonBox::Ok)->setText(tr("&Add"));
    auto* form = new QFormLayout;
    form->addRow(tr("&Name"), _name);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(_search);
    layout->addWidget(_list, 1);
    layout->addWidget(_description);
    layout->addWidget(_fittingOnly);
    layout->addLayout(form);
    layout->addWidget(buttons);
    const QFontMetrics metrics = fontMetrics();
    resize(metrics.averageCharWidth() * 60, metrics.lineSpacing() * 28);

    fill(scene, parentNode);
    _shown->setSourceModel(_types);
    _list->setModel(_shown);
    connect(_search, &QLineEdit::textChanged, this, &AddNodeDialog::narrow);
    connect(_fittingOnly, &QCheckBox::toggled, this, &AddNodeDialog::narrow);
    connect(_list->selectionModel(), &QItemSelectionModel::currentChanged, this, &AddNodeDialog::showChoice);
    connect(_list, &QListView::doubleClicked, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    _fittingOnly->setChecked(true);
    narrow();
    _search->setFocus();
}

AddNodeDialog::~AddNodeDialog() = default;

void AddNodeDialog::fill(const Orvane::Node& scene, Orvane::Node& parentNode)
{
    std::vector<Orvane::NodeType*> types;
    Orvane::NodeType::getTypeVec(types, 1);
    const std::vector<Orvane::NodeType*> prototypes = Orvane::Authoring::prototypes(scene);
    types.insert(types.begin(), prototypes.begin(), prototypes.end());
    for (const Orvane::NodeType* const type : types) {
        if (type->isContextRoot())
            continue;
        auto* const item = new QStandardItem(fromRuntime(type->name)); // the model takes it
        const QString description =
            type->isProto() ? tr("Prototype of this scene.") : fromRuntime(type->description);
        item->setData(description, DescriptionRole);
        item->setData(Orvane::Authoring::fieldFor(parentNode, *type) != nullptr, FitsRole);
        item->setToolTip(description);
        _types->appendRow(item);
    }
}

QString AddNodeDialog::typeName() const
{
    return _list->currentIndex().data().toString();
}

QString AddNodeDialog::nodeName() const
{
    return _name->text().trimmed();
}

void AddNodeDialog::narrow()
{
    static_cast<TypeFilter*>(_shown)->narrow(_search->text(), _fittingOnly->isChecked());
    _list->setCurrentIndex(_shown->index(0, 0));
    _list->scrollToTop();
    showChoice();
}

void AddNodeDialog::showChoice()
{
    const QModelIndex choice = _list->currentIndex();
    _ok->setEnabled(choice.isValid());
    _description->setText(choice.isValid()            ? choice.data(DescriptionRole).toString()
                          : _fittingOnly->isChecked() ? tr("No such type of node has a place there.")
                                                      : tr("There is no such type of node."));
}

bool AddNodeDialog::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == _search && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        const int step = key == Qt::Key_Down ? 1 : key == Qt::Key_Up ? -1 : 0;
        const QModelIndex next = _shown->index(_list->currentIndex().row() + step, 0);
        if (step != 0 && next.isValid()) {
            _list->setCurrentIndex(next);
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}
