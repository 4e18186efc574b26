using System.Reflection;

[assembly: AssemblyTitle("Tally")]
[assembly: AssemblyDescription("Counts the words of a text that it carries")]
[assembly: AssemblyCompany("")]
[assembly: AssemblyVersion("1.0.0.0")]
