using System.Reflection;
[assembly: AssemblyVersion("2.5.1.0")]
[assembly: AssemblyCompany("The shop")]
#if STRONG
[assembly: AssemblyKeyFile(@"..\..\..\keys\shop.snk")]
#endif
[assembly: AssemblyKeyName("")]
[assembly: AssemblyDelaySign(false)]
