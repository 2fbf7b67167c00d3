// The C# CSPro dictionary reader of the CSPro team's tools repository
// (csprousers/tools, CSPro.NET/DataDictionaryReader.cs) parses a CSPro text
// dictionary; prints its item count.
//
//     mono $KX_PEERS_DIR/cspro-net/CSProNetCount.exe FILE.dcf
//
// Compiled by setup.sh with Mono's mcs together with the peer's sources. The
// count is the id items plus the items of every record of every level.
//
// With KX_PARSE_REPEAT=K the file is parsed K times in this process (later
// times include the JIT's work on the earlier), and each time's wall-clock
// seconds go to stderr ("parse-seconds: ...").
using System;
using System.Diagnostics;
using System.Globalization;

public static class CSProNetCount
{
    public static int Main(string[] args)
    {
        string repeatText = Environment.GetEnvironmentVariable("KX_PARSE_REPEAT");
        int repeat = repeatText == null ? 1 : Math.Max(1, int.Parse(repeatText, CultureInfo.InvariantCulture));
        CSPro.DataDictionary dictionary = null;
        string times = "parse-seconds:";
        for (int i = 0; i < repeat; ++i)
        {
            dictionary = null;
            Stopwatch watch = Stopwatch.StartNew();
            dictionary = CSPro.DataDictionaryReader.Load(args[0]);
            times += " " + watch.Elapsed.TotalSeconds.ToString("F4", CultureInfo.InvariantCulture);
        }
        Console.Error.WriteLine(times);
        long count = 0;
        foreach (CSPro.Level level in dictionary.Levels)
        {
            count += level.IDs.Items.Count;
            foreach (CSPro.Record record in level.Records)
                count += record.Items.Count;
        }
        Console.WriteLine(count);
        return 0;
    }
}
