public class Prices { public static string Kind() { return "two"; } }
