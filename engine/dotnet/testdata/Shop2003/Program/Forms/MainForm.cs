namespace Shop.Windows
{
	public class MainForm
	{
	}

	public class Second
	{
	}
}
