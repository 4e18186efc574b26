using System;
using System.Reflection;
using Greeting;

namespace Hello
{
    internal static class Program
    {
        private static int Main(string[] args)
        {
            Version version = Assembly.GetExecutingAssembly().GetName().Version;
            Console.WriteLine(Greeter.Greet(args.Length > 0 ? args[0] : "build"));
            Console.WriteLine("This is version {0}.", version);
            return 0;
        }
    }
}
