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
#include <algorithm>

using Orvane::Qt4::fromRuntime;

namespace {

enum Role : int { TypeRole = Qt::UserRole, DescriptionRole, FitsBelowRole, FitsRole };

/// How a text speaks of a type.
enum Match : int { Exact, Prefix, Inner, InWords };

Match matchOf(const QString& name, const QString& text)
{
    if (name.compare(text, Qt::CaseInsensitive) == 0)
        return Exact;
    if (name.startsWith(text, Qt::CaseInsensitive))
        return Prefix;
    return name.contains(text, Qt::CaseInsensitive) ? Inner : InWords;
}

/// The type that was called by its name comes first, then those with a place, by how they were called.
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

    Match match(const QModelIndex& index) const { return matchOf(index.data(TypeRole).toString(), _text); }

    /// The row that is to be chosen; not valid when no type of that name has a place.
    QModelIndex likely() const
    {
        for (int row = 0; row < rowCount(); ++row) {
            const QModelIndex candidate = index(row, 0);
            const bool isUsable = candidate.flags() & Qt::ItemIsEnabled;
            if (match(candidate) == InWords || (!isUsable && match(candidate) == Exact))
                return {};
            if (isUsable)
                return candidate;
        }
        return {};
    }

protected:
    bool filterAcceptsRow(int row, const QModelIndex& parent) const override
    {
        const QModelIndex index = sourceModel()->index(row, 0, parent);
        if (_fittingOnly && !index.data(FitsBelowRole).toBool())
            return !_text.isEmpty() && match(index) <= Prefix;
        const QString text =
            index.data(TypeRole).toString() + QLatin1Char(' ') + index.data(DescriptionRole).toString();
        return std::all_of(_words.begin(), _words.end(),
                           [&text](const QString& word) { return text.contains(word, Qt::CaseInsensitive); });
    }

    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override
    {
        const int ranks = rank(left) - rank(right);
        return ranks != 0 ? ranks < 0 : left.data(TypeRole).toString() < right.data(TypeRole).toString();
    }

private:
    int rank(const QModelIndex& index) const
    {
        const Match match = this->match(index);
        const bool fits = index.data(_fittingOnly ? FitsBelowRole : FitsRole).toBool();
        return match == Exact || fits ? match : InWords + match;
    }

    QString _text;
    QStringList _words;
    bool _fittingOnly = false;
};

/// "a Shape", "an Appearance".
QString withArticle(const QString& name)
{
    const bool isVowel = QStringLiteral("AEIOU").contains(name.at(0));
    return (isVowel ? AddNodeDialog::tr("an %1") : AddNodeDialog::tr("a %1")).arg(name);
}

/// What a node of the type has to stand in, by the fields of all types.
QString needOf(const Orvane::NodeType& type)
{
    const std::vector<Orvane::NodeType*> parents = Orvane::Authoring::parentTypes(type);
    QStringList names;
    for (const Orvane::NodeType* const parent : parents)
        names << fromRuntime(parent->name);
    if (names.isEmpty())
        return AddNodeDialog::tr("no node has a field for it");
    if (names.contains(QStringLiteral("Group")))
        return AddNodeDialog::tr("needs a grouping node such as Group or Transform");
    // Those that an author knows come first.
    std::stable_partition(names.begin(), names.end(), [](const QString& name) {
        return QStringList{QStringLiteral("Shape"), QStringLiteral("Appearance"),
                           QStringLiteral("IndexedFaceSet")}
            .contains(name);
    });
    constexpr int mostNamed = 3;
    const bool hasMore = names.size() > mostNamed;
    QString need = AddNodeDialog::tr("needs %1").arg(withArticle(names.constFirst()));
    for (int i = 1; i < std::min<int>(names.size(), mostNamed); ++i) {
        const bool isLast = i + 1 == names.size();
        need += (isLast ? AddNodeDialog::tr(" or %1") : AddNodeDialog::tr(", %1")).arg(names.at(i));
    }
    return hasMore ? AddNodeDialog::tr("%1 or another one with a field for it").arg(need) : need;
}

} // namespace

AddNodeDialog::AddNodeDialog(const std::vector<Orvane::Node*>& way, const NameEdit::Check& check,
                             QWidget* parent)
    : QDialog(parent)
    , _search(new QLineEdit(this))
    , _fittingOnly(new QCheckBox(
          tr("&Only those with a place below %1").arg(fromRuntime(Orvane::Qt4::nodeName(way.back()))), this))
    , _list(new QListView(this))
    , _description(new QLabel(this))
    , _name(new NameEdit(QString(), check, this))
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
    _description->setObjectName(QStringLiteral("description"));
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

    fill(way);
    _shown->setSourceModel(_types);
    _list->setModel(_shown);
    connect(_search, &QLineEdit::textChanged, this, &AddNodeDialog::narrow);
    connect(_fittingOnly, &QCheckBox::toggled, this, &AddNodeDialog::narrow);
    connect(_list->selectionModel(), &QItemSelectionModel::currentChanged, this, &AddNodeDialog::showChoice);
    connect(_list, &QListView::doubleClicked, this, &AddNodeDialog::accept);
    connect(buttons, &QDialogButtonBox::accepted, this, &AddNodeDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    _fittingOnly->setChecked(true);
    narrow();
    _search->setFocus();
}

AddNodeDialog::~AddNodeDialog() = default;

void AddNodeDialog::fill(const std::vector<Orvane::Node*>& way)
{
    std::vector<Orvane::NodeType*> types;
    Orvane::NodeType::getTypeVec(types, 1);
    const std::vector<Orvane::NodeType*> prototypes = Orvane::Authoring::prototypes(*way.front());
    types.insert(types.begin(), prototypes.begin(), prototypes.end());
    for (Orvane::NodeType* const type : types) {
        if (type->isContextRoot())
            continue;
        const auto takes = [type](Orvane::Node* node) { return Orvane::Authoring::fieldFor(*node, *type); };
        auto* const item = new QStandardItem(fromRuntime(type->name)); // the model takes it
        item->setData(item->text(), TypeRole);
        item->setData(type->isProto() ? tr("Prototype of this scene.") : fromRuntime(type->description),
                      DescriptionRole);
        item->setData(takes(way.back()) != nullptr, FitsBelowRole);
        item->setData(std::any_of(way.begin(), way.end(), takes), FitsRole);
        _types->appendRow(item);
        _catalogue.push_back(type);
    }
}

QString AddNodeDialog::typeName() const
{
    const QModelIndex choice = _list->currentIndex();
    return choice.flags() & Qt::ItemIsEnabled ? choice.data(TypeRole).toString() : QString();
}

void AddNodeDialog::narrow()
{
    auto* const filter = static_cast<TypeFilter*>(_shown);
    filter->narrow(_search->text(), _fittingOnly->isChecked());
    for (int row = 0; row < _shown->rowCount(); ++row)
        updateRow(*_types->itemFromIndex(_shown->mapToSource(_shown->index(row, 0))));
    _list->setCurrentIndex(filter->likely());
    _list->scrollToTop();
    showChoice();
}

/// Only rows that are seen need a reason, which takes a look at all types.
void AddNodeDialog::updateRow(QStandardItem& item) const
{
    const bool fits = item.data(_fittingOnly->isChecked() ? FitsBelowRole : FitsRole).toBool();
    if (fits == item.isEnabled() && fits == (item.text() == item.data(TypeRole).toString()))
        return;
    const QString type = item.data(TypeRole).toString();
    const Orvane::NodeType& nodeType = *_catalogue[static_cast<std::size_t>(item.row())];
    item.setText(fits ? type : tr("%1: %2").arg(type, needOf(nodeType)));
    item.setEnabled(fits);
}

void AddNodeDialog::showChoice()
{
    const QModelIndex choice = _list->currentIndex();
    const QModelIndex first = _shown->index(0, 0);
    const bool isChosen = !typeName().isEmpty();
    _ok->setEnabled(isChosen);
    if (isChosen)
        _description->setText(choice.data(DescriptionRole).toString());
    else if (first.isValid() && !(first.flags() & Qt::ItemIsEnabled))
        _description->setText(
            tr("%1. %2").arg(first.data().toString(), first.data(DescriptionRole).toString()));
    else if (first.isValid())
        _description->setText(
            tr("No type of that name. The words stand in the descriptions of those above."));
    else if (_fittingOnly->isChecked())
        _description->setText(tr("No such type of node has a place there."));
    else
        _description->setText(tr("There is no such type of node."));
}

void AddNodeDialog::accept()
{
    if (!typeName().isEmpty() && _name->accepts())
        QDialog::accept();
}

bool AddNodeDialog::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == _search && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        const int step = key == Qt::Key_Down ? 1 : key == Qt::Key_Up ? -1 : 0;
        QModelIndex next = _shown->index(_list->currentIndex().row() + step, 0);
        while (next.isValid() && !(next.flags() & Qt::ItemIsEnabled))
            next = next.sibling(next.row() + step, 0);
        if (step != 0 && next.isValid()) {
            _list->setCurrentIndex(next);
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}
