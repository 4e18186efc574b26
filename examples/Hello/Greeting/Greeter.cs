using System;

namespace Greeting
{
    public static class Greeter
    {
        public static string Greet(string name)
        {
            if (String.IsNullOrEmpty(name))
                return "Hello!";
            return String.Format("Hello, {0}!", name);
        }
    }
}
