// CSPro2sql's dictionary reader (IstatCooperation/CSPro2sql,
// cspro2sql.reader.DictionaryReader) parses a CSPro text dictionary; prints
// its item count.
//
//     java -cp $KX_PEERS_DIR/cspro2sql/classes CSPro2sqlCount FILE.dcf
//
// Built by setup.sh against the peer's sources. DictionaryReader turns the
// level into a first record holding the id items, and expands occurrences
// into one item each (the generated dictionaries have none), so the count is
// the items of all its records.
import cspro2sql.bean.Dictionary;
import cspro2sql.bean.Record;
import cspro2sql.reader.DictionaryReader;
import java.util.List;

public final class CSPro2sqlCount {
    public static void main(String[] args) throws Exception {
        List<Dictionary> dictionaries = DictionaryReader.parseDictionaries("bench", args[0], "b");
        long count = 0;
        for (Dictionary dictionary : dictionaries) {
            for (Record record : dictionary.getRecords()) {
                count += record.getItems().size();
            }
        }
        System.out.println(count);
    }
}
