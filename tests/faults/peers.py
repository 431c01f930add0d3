def main(): pass
