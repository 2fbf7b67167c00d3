// Walks the record tree of a CSPro text dictionary: one node per record (the
// importer's groups), below a root node for the dictionary. Usage: record-tree FILE.dcf
#include <model_KelAdmin.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QTextStream>

#include <memory>
#include <vector>

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QLoggingCategory::setFilterRules("default.debug=false");
    QTextStream out(stdout), err(stderr);
    if (argc != 2) {
        err << "usage: record-tree FILE.dcf\n";
        return 2;
    }
    TCSProDataImport importer(QFileInfo(QString::fromLocal8Bit(argv[1])).absoluteFilePath());
    importer.setDecimalChoice(TDecimalChoice::NoToAll);
    try {
        importer.openFile();
    } catch (KxErrorManager *e) {
        err << e->getErrorMessage() << "\n";
        delete e;
        return 1;
    }
    // Nodes do not own their children: the caller keeps and deletes them all.
    std::vector<std::unique_ptr<TKxRecord>> nodes;
    TCSPro *dictionary = importer.getDictionaryReader();
    nodes.emplace_back(new TKxRecord);
    TKxRecord *root = nodes.front().get();
    root->setName(dictionary->getName());
    root->setLabel(dictionary->getLabel());
    for (int i = 0; i < importer.getGroupCount(); ++i) { // groups are "NAME=type"
        TCSProRecord *record = dictionary->findRecordByValue(importer.getGroupName(i).section('=', 1));
        nodes.emplace_back(new TKxRecord);
        TKxRecord *node = nodes.back().get();
        node->setName(importer.getGroupName(i).section('=', 0, 0));
        node->setLabel(record ? record->getLabel() : QString());
        node->setRecordInfo(record); // its type value is the node's recordTypeCode()
        root->addChild(node);
    }
    for (TKxRecord *node = root; node; node = node->preOrderNext()) {
        int fields = 0;
        for (TGenericField *f : *importer.getFields())
            fields += f->getGroup() == node->getName() ? 1 : 0;
        out << (node->getParent() ? "  " : "") << node->nodeCaption();
        if (node->getParent())
            out << "  type " << node->recordTypeCode() << ", " << fields << " fields";
        out << "\n";
    }
    return 0;
}
