using System.IO;
using System.Resources;
using System.Globalization;

namespace Shop.Data
{
	/// <summary>What things cost.</summary>
	public class Prices
	{
		/// <summary>The greeting in a language.</summary>
		public static string Greeting(string culture)
		{
			ResourceManager texts = new ResourceManager("Shop.Data.Texts.Greetings", typeof(Prices).Assembly);
			return texts.GetString("Hello", new CultureInfo(culture));
		}

		/// <summary>A file that is embedded as it is.</summary>
		public static string Note()
		{
			Stream note = typeof(Prices).Assembly.GetManifestResourceStream("Shop.Data.images._2nd.note.txt");
			return new StreamReader(note).ReadToEnd().Trim();
		}

		/// <summary>Adds without checking.</summary>
		public static unsafe int Sum(int[] prices)
		{
			int sum = 0;
			fixed (int* p = prices)
			{
				for (int i = 0; i < prices.Length; i++) sum += p[i];
			}
			return sum;
		}

#if DEBUG
		public static string Kind() { return "debug"; }
#else
		/// <summary>Which one this is.</summary>
		public static string Kind() { return "release \u00a9 " + "©"; }
#endif
	}
}
