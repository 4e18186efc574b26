using System;
using System.IO;
using System.Reflection;

namespace Tally
{
    class Program
    {
        static void Main()
        {
            using (StreamReader reader = new StreamReader(Assembly.GetExecutingAssembly().GetManifestResourceStream("Tally.Texts.txt")))
            {
                Console.WriteLine("{0} words", reader.ReadToEnd().Split(new char[] { ' ' }).Length);
            }
        }
    }
}
