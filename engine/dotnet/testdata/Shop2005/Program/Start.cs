class Start
{
    static void Main() { System.Console.WriteLine(Prices.Kind()); }
}
