using System;
using System.Configuration;
using System.Reflection;

class Other
{
	static int Main() { return 1; }
}

class Start
{
	static int Main()
	{
		Console.WriteLine(Shop.Data.Prices.Kind().Split(' ')[0]);
		Console.WriteLine(Shop.Data.Prices.Greeting("en") + ", " + Shop.Data.Prices.Greeting("de-AT"));
		Console.WriteLine(Shop.Data.Prices.Note());
		Console.WriteLine(Shop.Data.Prices.Sum(new int[] { 1, 2, 3 }));
		foreach (string name in Assembly.GetExecutingAssembly().GetManifestResourceNames()) Console.WriteLine(name);
		Console.WriteLine(new System.Resources.ResourceManager(typeof(Shop.Windows.MainForm)).GetString("File").Trim());
		Console.WriteLine(ConfigurationSettings.AppSettings["owner"]);
		return 0;
	}
}
