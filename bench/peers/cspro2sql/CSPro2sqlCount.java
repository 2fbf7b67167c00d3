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
//
// With KX_PARSE_REPEAT=K the file is parsed K times in this process (later
// times include the JIT's work on the earlier), and each time's wall-clock
// seconds go to stderr ("parse-seconds: ...").
import cspro2sql.bean.Dictionary;
import cspro2sql.bean.Record;
import cspro2sql.reader.DictionaryReader;
import java.util.List;

public final class CSPro2sqlCount {
    public static void main(String[] args) throws Exception {
        String repeatText = System.getenv("KX_PARSE_REPEAT");
        int repeat = repeatText == null ? 1 : Math.max(1, Integer.parseInt(repeatText));
        List<Dictionary> dictionaries = null;
        StringBuilder times = new StringBuilder("parse-seconds:");
        for (int i = 0; i < repeat; ++i) {
            dictionaries = null;
            long start = System.nanoTime();
            dictionaries = DictionaryReader.parseDictionaries("bench", args[0], "b");
            times.append(String.format(java.util.Locale.ROOT, " %.4f", (System.nanoTime() - start) / 1e9));
        }
        System.err.println(times);
        long count = 0;
        for (Dictionary dictionary : dictionaries) {
            for (Record record : dictionary.getRecords()) {
                count += record.getItems().size();
            }
        }
        System.out.println(count);
    }
}
