// The C# CSPro dictionary reader of the CSPro team's tools repository
// (csprousers/tools, CSPro.NET/DataDictionaryReader.cs) parses a CSPro text
// dictionary; prints its item count.
//
//     mono $KX_PEERS_DIR/cspro-net/CSProNetCount.exe FILE.dcf
//
// Compiled by setup.sh with Mono's mcs together with the peer's sources. The
// count is the id items plus the items of every record of every level.
using System;

public static class CSProNetCount
{
    public static int Main(string[] args)
    {
        CSPro.DataDictionary dictionary = CSPro.DataDictionaryReader.Load(args[0]);
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
