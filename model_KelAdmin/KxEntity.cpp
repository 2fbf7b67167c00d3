#include "KxEntity.h"

#include <QSet>
#include <QVector>

TKxEntity::TKxEntity()
    : children(new QList<TKxEntity *>)
    , variables(new QList<TKxVariable *>)
{
}

std::string TKxEntity::toString()
{
    return name.toUtf8().toStdString();
}

TKxEntity *TKxEntity::searchByName(const QString &wanted)
{
    // Depth-first, this entity before its children, children in list order.
    // Walked with an explicit stack and a visited set, so a very deep tree or
    // an entity listed below itself cannot exhaust the stack or loop.
    QVector<TKxEntity *> pending{this};
    QSet<const TKxEntity *> visited;
    while (!pending.isEmpty()) {
        TKxEntity *entity = pending.takeLast();
        if (!entity || visited.contains(entity))
            continue;
        visited.insert(entity);
        if (entity->name == wanted)
            return entity;
        if (!entity->children)
            continue;
        for (int i = entity->children->size() - 1; i >= 0; --i)
            pending.append(entity->children->at(i));
    }
    return nullptr;
}

TKxEntity *TKxEntity::findEntity(QString name)
{
    // The placeholder is only made when nothing matches, so a successful
    // search leaves nothing behind for the caller to free.
    if (TKxEntity *found = searchByName(name))
        return found;
    auto *placeholder = new TKxEntity;
    placeholder->setName(QStringLiteral("nullEntity"));
    return placeholder;
}

MetadataVariables::MetadataVariables()
    : range(new QList<Range *>)
{
}

TKxVariable::TKxVariable()
    : range(new QList<Range *>)
    , valueLabelElementList(new QList<ValueLabelElement *>)
    , metadataVariables(new MetadataVariables)
{
}

StructVariableItem::StructVariableItem()
    : children(new QList<StructVariableItem *>)
{
}

SelectionTreeUnit::SelectionTreeUnit()
    : children(new QList<SelectionTreeUnit *>)
{
}
